#include "ApiResponse.h"

#include <VexaJson.h>

ApiResponse::ApiResponse(int status, const QByteArray& body, const QByteArray& contentType)
    : m_status(status), m_body(body), m_contentType(contentType)
{
}

ApiResponse ApiResponse::json(int status, const QVariant& value)
{
    // Replies may carry the platform's own types inside variants; the writer
    // puts each in its JSON form, and an empty variant is null, not an empty body.
    return ApiResponse(status, VexaJson::toJson(value));
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

bool ApiResponse::unchangedFor(const QByteArray& ifNoneMatch, const QByteArray& etag)
{
    for (QByteArray tag : ifNoneMatch.split(',')) {
        tag = tag.trimmed();
        if (tag.startsWith("W/"))
            tag = tag.mid(2);
        if (tag == etag || tag == "*")
            return true;
    }
    return false;
}
