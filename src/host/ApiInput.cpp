#include "ApiInput.h"

#include <VexaJson.h>

#include <QSet>

bool ApiInput::readPath(const QVariant& value, CMPath* path, QString* error)
{
    if (value.userType() != QMetaType::QString) {
        *error = value.isValid() && !value.isNull() ? QStringLiteral("path must be a string")
                                                     : QStringLiteral("path is missing");
        return false;
    }
    const QString text = value.toString();
    if (text.isEmpty()) {
        *error = QStringLiteral("path is empty");
        return false;
    }
    if (text.contains(QChar(0))) {
        *error = QStringLiteral("path contains a NUL character");
        return false;
    }
    const CMPath parsed(text);
    if (parsed.prefix().isEmpty()) {
        *error = QStringLiteral("path has no prefix: ") + text;
        return false;
    }
    // Paths are names, not file-system locations; a ".." segment only ever
    // serves to escape somewhere.
    const QStringList segments = parsed.path().split(QLatin1Char('/'));
    if (segments.contains(QStringLiteral(".."))) {
        *error = QStringLiteral("path contains a '..' segment: ") + text;
        return false;
    }
    *path = parsed;
    return true;
}

bool ApiInput::readInt(const QString& text, int min, int max, int* out, QString* error)
{
    bool ok = false;
    const qlonglong v = text.trimmed().toLongLong(&ok, 10);
    if (!ok || v < min || v > max) {
        *error = QStringLiteral("'%1' is not a whole number from %2 to %3").arg(text).arg(min).arg(max);
        return false;
    }
    *out = int(v);
    return true;
}

QStringList ApiInput::readRoles(const QString& text)
{
    QStringList roles;
    // A role named again adds nothing: it is asked for and answered once.
    QSet<QString> seen;
    for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString role = part.trimmed();
        if (!role.isEmpty() && !seen.contains(role)) {
            seen.insert(role);
            roles.append(role);
        }
    }
    if (roles.isEmpty() || roles.contains(QStringLiteral("*")))
        return {QStringLiteral("*")};
    return roles;
}

bool ApiInput::readObject(const QByteArray& body, QVariantHash* object, QString* error)
{
    QString parseError;
    const QVariant value = VexaJson::parse(body, &parseError);
    if (!value.isValid()) {
        *error = QStringLiteral("the body is not JSON: ") + parseError;
        return false;
    }
    if (value.userType() != QMetaType::QVariantHash) {
        *error = QStringLiteral("the body must be a JSON object");
        return false;
    }
    *object = value.toHash();
    return true;
}
