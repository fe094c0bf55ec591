#pragma once

#include "VexaPlayListItem.h"

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>

#include <QDir>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <mutex>

struct sqlite3;

// Makes a fresh temporary directory the working directory for the lifetime
// of the object, so that each test gets a store of its own.
class WorkDir
{
public:
    WorkDir() : m_previous(QDir::currentPath()) { QDir::setCurrent(m_dir.path()); }
    ~WorkDir() { QDir::setCurrent(m_previous); }

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// Items titled "<prefix>0", "<prefix>1", ... so that the order of entries
// can be read back from the titles alone.
struct TestItems
{
    static VexaPlayListItem item(const QString& title);
    static QList<VexaPlayListItem> make(int count, const QString& prefix)
    {
        QList<VexaPlayListItem> items;
        for (int i = 0; i < count; ++i)
            items.append(item(prefix + QString::number(i)));
        return items;
    }
};

// A second, plain connection to a store file (by default the one under the
// working directory), for reading rows back and for planting rows or
// triggers that the module's own operations can't make.
class StoreReader
{
public:
    explicit StoreReader(const QString& file = "data-rw/playlists/playlists.sqlite");
    ~StoreReader();

    // Every row as text, columns joined by '|' (NULL shows as "<null>").
    QStringList rows(const char* sql, const QVariantList& args = QVariantList()) const;
    int scalar(const char* sql, const QVariantList& args = QVariantList()) const
    {
        bool ok = false;
        const int value = rows(sql, args).value(0).toInt(&ok);
        return ok ? value : -999;
    }
    // Runs a statement; true when it succeeded.
    bool exec(const char* sql, const QVariantList& args = QVariantList()) const;
    // "seq|title" for each entry of a playlist, in sequence order.
    QStringList entries(int playlist) const
    {
        return rows("SELECT pi.sequenceNumber, i.title FROM playlists_items pi JOIN items i ON i.uid = pi.item"
                    " WHERE pi.playlist = ?1 ORDER BY pi.sequenceNumber", {playlist});
    }
    // Every row of the tables that hold entries, for before/after comparisons.
    QStringList snapshot() const
    {
        return rows("SELECT 'pi', playlist, item, sequenceNumber FROM playlists_items UNION ALL SELECT 'it', uid, title, url FROM items"
                    " UNION ALL SELECT 'pl', uid, name, lastPlayedIndex FROM playlists ORDER BY 1, 2, 3, 4");
    }

private:
    sqlite3* m_db = nullptr;
};

// Captures what one logger writes for the lifetime of the object, with the
// logger's level set as given (TRACE by default, so entry lines show).
class LogCapture
{
public:
    explicit LogCapture(const char* loggerName = "PlayLists", int level = log4cplus::TRACE_LOG_LEVEL)
        : m_logger(log4cplus::Logger::getInstance(loggerName)), m_previousLevel(m_logger.getLogLevel()), m_appender(new Appender)
    {
        m_logger.setLogLevel(level);
        m_logger.addAppender(log4cplus::SharedAppenderPtr(m_appender.get()));
    }
    ~LogCapture()
    {
        m_logger.removeAppender(log4cplus::SharedAppenderPtr(m_appender.get()));
        m_logger.setLogLevel(m_previousLevel);
    }

    // Messages at exactly this level (any level: -1), or only those that
    // start with prefix, oldest first.
    QStringList messages(int level, const QString& prefix = QString()) const
    {
        std::lock_guard<std::mutex> lock(m_appender->mutex);
        QStringList result;
        for (const auto& event : m_appender->events) {
            if ((level < 0 || event.first == level) && event.second.startsWith(prefix))
                result.append(event.second);
        }
        return result;
    }
    bool contains(int level, const QString& message) const { return messages(level).contains(message); }
    int count(int level, const QString& message) const { return messages(level).count(message); }
    QStringList startingWith(const QString& prefix) const { return messages(-1, prefix); }
    void clear()
    {
        std::lock_guard<std::mutex> lock(m_appender->mutex);
        m_appender->events.clear();
    }
    // Also writes each event to stderr, where death tests look for it.
    void echoToStderr()
    {
        std::lock_guard<std::mutex> lock(m_appender->mutex);
        m_appender->echo = true;
    }

private:
    class Appender : public log4cplus::Appender
    {
    public:
        ~Appender() override { destructorImpl(); }
        void close() override { closed = true; }

        std::mutex mutex;
        QList<QPair<int, QString>> events;
        bool echo = false;

    protected:
        void append(const log4cplus::spi::InternalLoggingEvent& event) override;
    };

    log4cplus::Logger m_logger;
    int m_previousLevel;
    log4cplus::helpers::SharedObjectPtr<Appender> m_appender;
};
