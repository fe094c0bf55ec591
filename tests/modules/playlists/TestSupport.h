#pragma once

#include "VexaPlayListItem.h"

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <ctime>
#include <mutex>

struct sqlite3;

// Makes a fresh temporary directory the working directory for the lifetime
// of the object, so that each test gets a store of its own.
class WorkDir
{
public:
    WorkDir();
    ~WorkDir();

private:
    QTemporaryDir m_dir;
    QString m_previous;
};

// Items titled "<prefix>0", "<prefix>1", ... so that the order of entries
// can be read back from the titles alone.
struct TestItems
{
    static VexaPlayListItem item(const QString& title);
    static QList<VexaPlayListItem> make(int count, const QString& prefix);
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
    int scalar(const char* sql, const QVariantList& args = QVariantList()) const;
    // Runs a statement; true when it succeeded.
    bool exec(const char* sql, const QVariantList& args = QVariantList()) const;
    // "seq|title" for each entry of a playlist, in sequence order.
    QStringList entries(int playlist) const;
    // Every row of the tables that hold entries, for before/after comparisons.
    QStringList snapshot() const;

private:
    sqlite3* m_db = nullptr;
};

// Captures what one logger writes for the lifetime of the object, with the
// logger's level set as given (TRACE by default, so entry lines show).
class LogCapture
{
public:
    explicit LogCapture(const char* loggerName = "PlayLists", int level = log4cplus::TRACE_LOG_LEVEL);
    ~LogCapture();

    // Messages at exactly this level, oldest first.
    QStringList messages(int level) const;
    bool contains(int level, const QString& message) const { return messages(level).contains(message); }
    int count(int level, const QString& message) const { return messages(level).count(message); }
    // Messages at any level that start with prefix.
    QStringList startingWith(const QString& prefix) const;
    void clear();
    // Also writes each event to stderr, where death tests look for it.
    void echoToStderr();

    class Appender : public log4cplus::Appender
    {
    public:
        ~Appender() override { destructorImpl(); }
        void close() override { closed = true; }

        mutable std::mutex mutex;
        QList<QPair<int, QString>> events;
        bool echo = false;

    protected:
        void append(const log4cplus::spi::InternalLoggingEvent& event) override;
    };

private:
    QList<QPair<int, QString>> events() const;

    log4cplus::Logger m_logger;
    int m_previousLevel;
    log4cplus::helpers::SharedObjectPtr<Appender> m_appender;
};

// Fixes what time() answers in this test executable for the lifetime of the
// object, so that code seeding rand() from the clock draws numbers a test can
// foresee. The executable is linked with --wrap=time; while no TestClock
// lives, time() answers the real clock.
class TestClock
{
public:
    explicit TestClock(std::time_t now);
    ~TestClock();
    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;

    void set(std::time_t now);
};
