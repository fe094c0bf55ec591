#pragma once

#include "SettingsWriter.h"

#include <CMAbstractWorker.h>

#include <QHash>
#include <QMutex>
#include <QString>

// The settings: every path under "settings:/" holds one value, read and
// written from any thread. A change holds at once (it is read back and
// announced as it is set) and is answered once data-rw/settings.json, which
// the writer's thread rewrites atomically, holds it on disk: what was
// answered survives a crash, and neither reads nor the threads that set
// values wait for the disk. Values never set read as their defaults.
class SettingsStore : public CMAbstractWorker
{
    Q_OBJECT
public:
    static QString prefix() { return QStringLiteral("settings"); }

    // Loads data-rw/settings.json below the working directory. A file that is
    // not a valid settings file is moved aside and the defaults are used.
    SettingsStore();

    QVariant getValue(const CMPath& path) override;
    void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply) override;
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override;

    // Stores text as the setting at path, typed as the setting's default is
    // (bool_, i32_, else string_), and waits until it is on disk; false with
    // error set when it cannot.
    bool setText(const QString& path, const QString& text, QString* error);

    static QString filePath();
    static const QHash<QString, VexaValue>& defaults();

private:
    void load();
    bool save(const QHash<QString, VexaValue>& values, QString* error) const;
    void moveAside(const QString& reason);
    // On the writer's thread: stores the values as they are, then answers
    // the changes whose replies are given.
    void write(const SettingsWriter::Replies& replies);

    mutable QMutex m_mutex;
    QHash<QString, VexaValue> m_values;
    // Last: it is stopped, and what it still holds written, first.
    SettingsWriter m_writer;
};
