#include "ApiResponse.h"

#include <CMPath.h>
#include <VexaJson.h>
#include <VexaRoles.h>
#include <VexaValue.h>

namespace {

// Replies may carry the platform's own types inside variants; JSON knows only
// hashes, lists and scalars, so those are unwrapped to their JSON form first.
QVariant toJsonForm(const QVariant& value)
{
    const int type = value.userType();
    if (type == qMetaTypeId<CMPath>())
        return value.value<CMPath>().toEncoded();
    if (type == qMetaTypeId<VexaValue>())
        return value.value<VexaValue>().toVariant();
    if (type == qMetaTypeId<VexaRoles>())
        return toJsonForm(value.value<VexaRoles>().toVariant());
    if (type == qMetaTypeId<CMError>())
        return value.value<CMError>().toVariant();
    if (type == QMetaType::QVariantHash) {
        QVariantHash hash = value.toHash();
        for (auto it = hash.begin(); it != hash.end(); ++it)
            it.value() = toJsonForm(it.value());
        return hash;
    }
    if (type == QMetaType::QVariantMap) {
        QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            it.value() = toJsonForm(it.value());
        return map;
    }
    if (type == QMetaType::QVariantList) {
        QVariantList list = value.toList();
        for (QVariant& item : list)
            item = toJsonForm(item);
        return list;
    }
    if (type == QMetaType::QStringList)
        return QVariant(value.toStringList()).toList();
    return value;
}

} // namespace

ApiResponse::ApiResponse(int status, const QByteArray& body, const QByteArray& contentType)
    : m_status(status), m_body(body), m_contentType(contentType)
{
}

ApiResponse ApiResponse::json(int status, const QVariant& value)
{
    // An empty variant is JSON null, not an empty body.
    const QVariant jsonValue = value.isValid() ? toJsonForm(value) : QVariant::fromValue(nullptr);
    return ApiResponse(status, VexaJson::toJson(jsonValue));
}

ApiResponse ApiResponse::error(int status, const QString& name, const QString& title, const QString& message)
{
    const QVariantHash error{{CMError::Name(), name}, {CMError::Title(), title}, {CMError::Message(), message}};
    return json(status, QVariantHash{{QStringLiteral("error"), error}});
}

ApiResponse ApiResponse::badRequest(const QString& message)
{
    return error(400, CMError::BadRequestName(), QStringLiteral("Bad request"), message);
}

ApiResponse ApiResponse::fromError(const CMError& error)
{
    QVariantHash envelope = error.hash();
    // A module error without a name still gets the three fields clients read.
    if (!envelope.contains(CMError::Name()))
        envelope.insert(CMError::Name(), CMError::DefaultName());
    if (!envelope.contains(CMError::Title()))
        envelope.insert(CMError::Title(), CMError::DefaultTitle());
    if (!envelope.contains(CMError::Message()))
        envelope.insert(CMError::Message(), QString());
    return json(statusForErrorName(error.name()), QVariantHash{{QStringLiteral("error"), envelope}});
}

int ApiResponse::statusForErrorName(const QString& name)
{
    if (name == CMError::InvalidPathName())
        return 404;
    if (name == CMError::BadRequestName())
        return 400;
    if (name == CMError::TimeoutName())
        return 504;
    // Any other name is a command that refused.
    return 422;
}
