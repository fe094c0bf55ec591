#pragma once

#include <CMAbstractWorker.h>

#include <QHash>
#include <QMutex>
#include <QString>

// The settings: every path under "settings:/" holds one value, read and
// written from any thread. Values that were set are kept in
// data-rw/settings.json, rewritten atomically on every change; values never
// set read as their defaults.
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
    // (bool_, i32_, else string_); false with error set when it cannot.
    bool setText(const QString& path, const QString& text, QString* error);

    static QString filePath();
    static const QHash<QString, VexaValue>& defaults();

private:
    void load();
    bool save(const QHash<QString, VexaValue>& values, QString* error) const;
    void moveAside(const QString& reason);

    mutable QMutex m_mutex;
    QHash<QString, VexaValue> m_values;
};
