#include "ContentApi.h"

#include "ApiInput.h"

#include <CMGetRowsRequest.h>
#include <CMRootWorker.h>
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
    to = int(qMin<qint64>(to, qint64(qMax(from, 0)) + MaxPageRows - 1));
    const QStringList roles = ApiInput::readRoles(request.argument(QStringLiteral("roles")));

    const CMReply<QVariant> reply;
    m_root->getRows(CMGetRowsRequest(path, from, to, roles, m_requestIndex.fetchAndAddRelaxed(1) + 1, reply));
    return ApiResult::await(reply, [](const QVariant& data) {
        const VexaRowsRoles rowsRoles(data.toHash());
        const VexaRoles header = rowsRoles.roles();
        return ApiResponse::json(200, QVariantHash{{QStringLiteral("title"), header.title()},
                                                   {VexaRowsRoles::Roles(), header.toVariant()},
                                                   {VexaRowsRoles::RowsCount(), rowsRoles.rowsCount()},
                                                   {VexaRowsRoles::Rows(), rowsRoles.rows()}});
    });
}

ApiResult ContentApi::data(const ApiRequest& request)
{
    QString error;
    CMPath path;
    if (!readPathArgument(request, &path, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    const QStringList roles = ApiInput::readRoles(request.argument(QStringLiteral("roles")));

    // Value paths (settings, player state) answer synchronously; everything
    // else is a node whose roles its worker gives.
    const QVariant value = m_root->getValue(path);
    if (value.isValid()) {
        QVariantHash answer;
        if (roles.contains(QStringLiteral("*")) || roles.contains(VexaRoles::Value()))
            answer.insert(VexaRoles::Value(), value);
        return ApiResult::ready(ApiResponse::json(200, answer));
    }
    const CMReply<QVariant> reply;
    m_root->getData(path, roles, reply);
    return ApiResult::await(reply, [](const QVariant& data) {
        // A node without roles still answers an object.
        return ApiResponse::json(200, data.isValid() ? data : QVariant(QVariantHash()));
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

    const CMReply<QVariant> reply;
    m_root->invoke(path, value, reply);
    return ApiResult::await(reply, [](const QVariant& data) { return ApiResponse::json(200, data); });
}
