#pragma once

#include <CMError.h>

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

// What the API answers to one request: a status, a body and its type, and any
// extra headers. Errors always carry the envelope
// {"error": {"name": …, "title": …, "message": …}}.
class ApiResponse
{
public:
    using Header = QPair<QByteArray, QByteArray>;

    // Names of the errors the API itself raises (modules add their own).
    static QString NotFoundName() { return QStringLiteral("notFound"); }
    static QString MethodNotAllowedName() { return QStringLiteral("methodNotAllowed"); }
    static QString PayloadTooLargeName() { return QStringLiteral("payloadTooLarge"); }
    static QString InvalidSubscriptionName() { return QStringLiteral("invalidSubscription"); }
    static QString InternalErrorName() { return QStringLiteral("internalError"); }
    static QString TooManyRolesName() { return QStringLiteral("tooManyRoles"); }
    static QString TooManyCellsName() { return QStringLiteral("tooManyCells"); }
    static QString AnswerTooLargeName() { return QStringLiteral("answerTooLarge"); }
    static QString UriTooLongName() { return QStringLiteral("uriTooLong"); }
    static QString IdempotencyKeyReusedName() { return QStringLiteral("idempotencyKeyReused"); }
    static QString TooManyRequestsName() { return QStringLiteral("tooManyRequests"); }

    ApiResponse() = default;
    ApiResponse(int status, const QByteArray& body, const QByteArray& contentType = "application/json");

    static ApiResponse json(int status, const QVariant& value);
    static ApiResponse error(int status, const QString& name, const QString& title, const QString& message);
    static ApiResponse badRequest(const QString& message);
    // A module's error, passed on unchanged: invalidPath 404, badRequest 400,
    // timeout 504, any other name 422 (a command that refused).
    static ApiResponse fromError(const CMError& error);
    static int statusForErrorName(const QString& name);
    // Whether a request's If-None-Match list ("a", W/"b", or *) names etag:
    // the client's copy is current and 304 Not Modified answers it.
    static bool unchangedFor(const QByteArray& ifNoneMatch, const QByteArray& etag);

    int status() const { return m_status; }
    const QByteArray& body() const { return m_body; }
    const QByteArray& contentType() const { return m_contentType; }
    const QList<Header>& headers() const { return m_headers; }
    void addHeader(const QByteArray& name, const QByteArray& value) { m_headers.append(Header(name, value)); }

private:
    int m_status = 500;
    QByteArray m_body;
    QByteArray m_contentType;
    QList<Header> m_headers;
};
