#include "SettingsStore.h"

#include "AtomicFile.h"

#include <CMRootWorker.h>
#include <VexaJson.h>
#include <VexaLog.h>
#include <VexaPaths.h>

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Settings");
}

VexaValue boolValue(bool v)
{
    VexaValue value;
    value.setBool_(v);
    return value;
}

VexaValue intValue(int v)
{
    VexaValue value;
    value.setI32_(v);
    return value;
}

VexaValue stringValue(const QString& v)
{
    VexaValue value;
    value.setString_(v);
    return value;
}

CMError badValue(const QString& message)
{
    return CMError(CMError::BadRequestName(), QStringLiteral("Invalid value"), TrString(message));
}

bool isSettingPath(const CMPath& path)
{
    return path.prefix() == SettingsStore::prefix() && path.params().isEmpty() && path.path().size() > 1
        && path.path().startsWith(QLatin1Char('/'));
}

} // namespace

SettingsStore::SettingsStore() : m_writer([this](const SettingsWriter::Replies& replies) { write(replies); })
{
    load();
}

QString SettingsStore::filePath()
{
    return QStringLiteral("data-rw/settings.json");
}

const QHash<QString, VexaValue>& SettingsStore::defaults()
{
    static const QHash<QString, VexaValue> values = {
        {VexaPlayListSettingsPlayqueueVisibilityPath().toEncoded(), boolValue(true)},
        {VexaPlayListSettingsCollectionsVisibilityPath().toEncoded(), boolValue(true)},
        {VexaPlayListsSettingsDataBaseItemsLimitPath().toEncoded(), intValue(10000)},
        {VexaPlayListSettingsDataBaseVacuumPath().toEncoded(), boolValue(false)},
        {VexaLanguageSettingsPath().toEncoded(), stringValue(QStringLiteral("en"))},
        {QStringLiteral("settings:/library/folder"), stringValue(QStringLiteral("music"))},
    };
    return values;
}

bool SettingsStore::setText(const QString& path, const QString& text, QString* error)
{
    const QString type = defaults().value(CMPath(path).toEncoded()).type();
    VexaValue value;
    bool ok = true;
    if (type == VexaValue::Bool_()) {
        ok = text == QLatin1String("true") || text == QLatin1String("false");
        value.setBool_(text == QLatin1String("true"));
    } else if (type == VexaValue::I32()) {
        value.setI32_(text.toInt(&ok));
    } else {
        value.setString_(text);
    }
    if (!ok) {
        *error = QStringLiteral("%1 takes a %2, not '%3'").arg(path, type, text);
        return false;
    }
    const CMReply<QVariant> reply;
    setValue(CMPath(path), value, reply);
    reply.waitForFinished();
    if (reply.hasError())
        *error = QStringLiteral("%1: %2").arg(path, reply.error().message());
    return !reply.hasError();
}

QVariant SettingsStore::getValue(const CMPath& path)
{
    const QString key = path.toEncoded();
    QMutexLocker lock(&m_mutex);
    if (m_values.contains(key))
        return m_values.value(key).toVariant();
    if (defaults().contains(key))
        return defaults().value(key).toVariant();
    return QVariant();
}

void SettingsStore::invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply)
{
    if (value.type() != QVariant::Hash) {
        reply.setError(badValue(QStringLiteral("A setting's value must be a typed value object")));
        return;
    }
    setValue(path, VexaValue(value.toHash()), reply);
}

void SettingsStore::setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply)
{
    if (!isSettingPath(path)) {
        reply.setError(invalidPathError(path));
        return;
    }
    if (!value.isValid()) {
        reply.setError(badValue(QStringLiteral("Not a valid typed value for %1").arg(path.toEncoded())));
        return;
    }
    // Only the typed field travels on: stray keys of the request are not stored.
    VexaValue clean;
    clean.insert(VexaValue::Type(), value.type());
    clean.insert(value.type(), value.value(value.type()));

    const QString key = path.toEncoded();
    {
        // Announced under the lock so that listeners see changes in order.
        QMutexLocker lock(&m_mutex);
        const VexaValue old = m_values.contains(key) ? m_values.value(key) : defaults().value(key);
        m_values.insert(key, clean);
        if (old != clean)
            emit CMRoot()->valueChanged(path, clean, old);
    }
    // Answered by the writer once a file holding the change is on disk.
    m_writer.queue(reply);
}

void SettingsStore::write(const SettingsWriter::Replies& replies)
{
    QHash<QString, VexaValue> values;
    {
        // Every queued change is in the values already: they were set
        // before their replies were queued.
        QMutexLocker lock(&m_mutex);
        values = m_values;
    }
    QString error;
    const bool saved = save(values, &error);
    if (saved) {
        LOG4CPLUS_DEBUG(logger(), "Stored " << replies.size() << " change(s) with one write");
    } else {
        // The values hold until the host stops, and the next write that
        // succeeds stores them; the clients learn that they are not stored.
        LOG4CPLUS_ERROR(logger(), "Unable to save settings: " << error);
    }
    for (const CMReply<QVariant>& reply : replies) {
        if (saved)
            reply.setData(QVariant());
        else
            reply.setError(CMError(QStringLiteral("storageError"), CMError::DefaultTitle(),
                                   TrString(QStringLiteral("The setting could not be saved"))));
    }
}

void SettingsStore::load()
{
    QFile file(filePath());
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        LOG4CPLUS_ERROR(logger(), "Unable to read " << filePath() << ": " << file.errorString() << "; using defaults");
        return;
    }
    QString error;
    const QVariant parsed = VexaJson::parse(file.readAll(), &error);
    file.close();
    if (parsed.type() != QVariant::Hash) {
        moveAside(error.isEmpty() ? QStringLiteral("not a JSON object") : error);
        return;
    }
    QHash<QString, VexaValue> values;
    const QVariantHash hash = parsed.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it) {
        const VexaValue value(it.value().toHash());
        if (!isSettingPath(CMPath(it.key())) || it.value().type() != QVariant::Hash || !value.isValid()) {
            moveAside(QStringLiteral("invalid entry ") + it.key());
            return;
        }
        values.insert(CMPath(it.key()).toEncoded(), value);
    }
    m_values = values;
}

bool SettingsStore::save(const QHash<QString, VexaValue>& values, QString* error) const
{
    QVariantHash hash;
    for (auto it = values.begin(); it != values.end(); ++it)
        hash.insert(it.key(), it.value().toVariant());
    if (!QDir().mkpath(QFileInfo(filePath()).path())) {
        *error = QStringLiteral("cannot create ") + QFileInfo(filePath()).path();
        return false;
    }
    return AtomicFile::write(filePath(), VexaJson::toJson(hash), error);
}

void SettingsStore::moveAside(const QString& reason)
{
    const QString aside =
        filePath() + QStringLiteral(".corrupt-") + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddThhmmsszzz"));
    const bool moved = QFile::rename(filePath(), aside);
    LOG4CPLUS_ERROR(logger(), "Corrupt settings file " << filePath() << " (" << reason << "): "
                                                       << (moved ? "moved aside to " + aside : QStringLiteral("could not be moved aside"))
                                                       << "; using defaults");
}
