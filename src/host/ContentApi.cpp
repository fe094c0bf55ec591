#include "ContentApi.h"

#include "ApiInput.h"

#include <CMGetRowsRequest.h>
#include <CMRootWorker.h>
#include <VexaJson.h>
#include <VexaRowsRoles.h>

#include <limits>

namespace {

// A row bound: any whole number, held to the range of int at its ends.
bool readRow(const QString& text, int* row, QString* error)
{
    bool ok = false;
    const qlonglong value = text.trimmed().toLongLong(&ok, 10);
    if (!ok) {
        *error = QStringLiteral("'%1' is not a whole number").arg(text);
        return false;
    }
    *row = int(qBound<qlonglong>(std::numeric_limits<int>::min(), value, std::numeric_limits<int>::max()));
    return true;
}

// The request's "path" argument; a missing one reads as an error.
bool readPathArgument(const ApiRequest& request, CMPath* path, QString* error)
{
    const QVariant argument =
        request.hasArgument(QStringLiteral("path")) ? QVariant(request.argument(QStringLiteral("path"))) : QVariant();
    return ApiInput::readPath(argument, path, error);
}

ApiResponse answerTooLarge()
{
    return ApiResponse::error(400, ApiResponse::AnswerTooLargeName(), QStringLiteral("Answer too large"),
                              QStringLiteral("Answers are limited to %1 bytes: ask for fewer rows or roles")
                                  .arg(ContentApi::MaxAnswerBytes));
}

// The roles asked for, refused beyond the limit.
bool readRoles(const ApiRequest& request, QStringList* roles, ApiResponse* refusal)
{
    *roles = ApiInput::readRoles(request.argument(QStringLiteral("roles")));
    if (roles->size() <= ContentApi::MaxRoles)
        return true;
    *refusal = ApiResponse::error(400, ApiResponse::TooManyRolesName(), QStringLiteral("Too many roles"),
                                  QStringLiteral("At most %1 different roles may be asked for at once, not %2")
                                      .arg(ContentApi::MaxRoles)
                                      .arg(roles->size()));
    return false;
}

// The rows answer, written row by row so that one beyond the limit is given
// up when it gets there instead of being built whole first. The keys come in
// the order the JSON writer gives them, so that the text is what it would be.
ApiResponse rowsAnswer(const QVariant& data)
{
    const VexaRowsRoles rowsRoles(data.toHash());
    const VexaRoles header = rowsRoles.roles();
    const QVariantList rows = rowsRoles.rows();
    QByteArray body = "{\"roles\":" + VexaJson::toJson(header.toVariant()) + ",\"rows\":[";
    for (int i = 0; i < rows.size(); ++i) {
        if (i > 0)
            body += ',';
        VexaJson::appendJson(rows.at(i), body);
        if (body.size() > ContentApi::MaxAnswerBytes)
            return answerTooLarge();
    }
    body += "],\"rowsCount\":" + QByteArray::number(rowsRoles.rowsCount()) + ",\"title\":"
        + VexaJson::toJson(header.title()) + '}';
    if (body.size() > ContentApi::MaxAnswerBytes)
        return answerTooLarge();
    return ApiResponse(200, body);
}

} // namespace

ContentApi::ContentApi(CMRootWorker* root) : m_root(root) {}

ApiResult ContentApi::rows(const ApiRequest& request)
{
    QString error;
    CMPath path;
    if (!readPathArgument(request, &path, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    // Any whole numbers pass: the nodes clamp the range to their rows. The
    // host only bounds how many rows one page may carry, counted from where
    // the page really starts.
    int from = 0;
    if (request.hasArgument(QStringLiteral("from")) && !readRow(request.argument(QStringLiteral("from")), &from, &error))
        return ApiResult::ready(ApiResponse::badRequest(QStringLiteral("from: ") + error));
    int to = int(qMin<qint64>(qint64(from) + 99, std::numeric_limits<int>::max()));
    if (request.hasArgument(QStringLiteral("to")) && !readRow(request.argument(QStringLiteral("to")), &to, &error))
        return ApiResult::ready(ApiResponse::badRequest(QStringLiteral("to: ") + error));
    const qint64 first = qMax(from, 0);
    to = int(qMin<qint64>(to, first + MaxPageRows - 1));
    QStringList roles;
    ApiResponse refusal;
    if (!readRoles(request, &roles, &refusal))
        return ApiResult::ready(refusal);
    // Counted before the module builds the page, which is where the memory goes.
    const bool every = roles.size() == 1 && roles.first() == QLatin1String("*");
    const qint64 cells = qMax<qint64>(0, to - first + 1) * (every ? StarRoles : roles.size());
    if (cells > MaxCells)
        return ApiResult::ready(ApiResponse::error(
            400, ApiResponse::TooManyCellsName(), QStringLiteral("Too many cells"),
            QStringLiteral("A page holds at most %1 cells (rows times roles, * counting as %2 roles), not %3: "
                           "ask for fewer rows or roles")
                .arg(MaxCells)
                .arg(StarRoles)
                .arg(cells)));

    const CMReply<QVariant> reply;
    m_root->getRows(CMGetRowsRequest(path, from, to, roles, m_requestIndex.fetchAndAddRelaxed(1) + 1, reply));
    return ApiResult::await(reply, rowsAnswer);
}

ApiResult ContentApi::data(const ApiRequest& request)
{
    QString error;
    CMPath path;
    if (!readPathArgument(request, &path, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    QStringList roles;
    ApiResponse refusal;
    if (!readRoles(request, &roles, &refusal))
        return ApiResult::ready(refusal);
    const auto bounded = [](const ApiResponse& answer) {
        return answer.body().size() > MaxAnswerBytes ? answerTooLarge() : answer;
    };

    // Value paths (settings, player state) answer synchronously; everything
    // else is a node whose roles its worker gives.
    const QVariant value = m_root->getValue(path);
    if (value.isValid()) {
        QVariantHash answer;
        if (roles.contains(QStringLiteral("*")) || roles.contains(VexaRoles::Value()))
            answer.insert(VexaRoles::Value(), value);
        return ApiResult::ready(bounded(ApiResponse::json(200, answer)));
    }
    const CMReply<QVariant> reply;
    m_root->getData(path, roles, reply);
    return ApiResult::await(reply, [bounded](const QVariant& data) {
        // A node without roles still answers an object.
        return bounded(ApiResponse::json(200, data.isValid() ? data : QVariant(QVariantHash())));
    });
}

ApiResult ContentApi::setData(const ApiRequest& request)
{
    QString error;
    QVariantHash body;
    if (!ApiInput::readObject(request.body(), &body, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    CMPath path;
    if (!ApiInput::readPath(body.value(QStringLiteral("path")), &path, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    QVariant value = body.value(QStringLiteral("value"));
    // JSON null and an absent value both reach the module as no value.
    if (value.userType() == QMetaType::Nullptr)
        value = QVariant();

    const auto finish = [](const QVariant& data) { return ApiResponse::json(200, data); };
    CMReply<QVariant> reply;
    const QByteArray key = request.header("Idempotency-Key");
    if (!key.isEmpty()) {
        if (!IdempotencyKeys::isValid(key))
            return ApiResult::ready(ApiResponse::badRequest(
                QStringLiteral("Idempotency-Key must be 1 to %1 visible ASCII characters").arg(IdempotencyKeys::MaxKeyBytes)));
        switch (m_keys.claim(key, request.body(), &reply)) {
        case IdempotencyKeys::Claim::New:
            break;
        case IdempotencyKeys::Claim::Retry:
            // Answered when the first command's reply is there, as it would have been.
            return ApiResult::await(reply, finish);
        case IdempotencyKeys::Claim::Mismatch:
            return ApiResult::ready(ApiResponse::error(
                422, ApiResponse::IdempotencyKeyReusedName(), QStringLiteral("Idempotency key reused"),
                QStringLiteral("This Idempotency-Key was sent with another command; use a new key for a new command")));
        case IdempotencyKeys::Claim::Full: {
            ApiResponse busy = ApiResponse::error(
                429, ApiResponse::TooManyRequestsName(), QStringLiteral("Too many requests"),
                QStringLiteral("%1 commands with an Idempotency-Key are still running; try again shortly")
                    .arg(IdempotencyKeys::MaxKeys));
            busy.addHeader("Retry-After", "1");
            return ApiResult::ready(busy);
        }
        }
    }
    m_root->invoke(path, value, reply);
    return ApiResult::await(reply, finish);
}
