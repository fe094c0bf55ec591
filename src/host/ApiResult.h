#pragma once

#include "ApiResponse.h"

#include <CMReply.h>

#include <QString>
#include <QVariant>

#include <functional>

// What handling a request leads to: an answer at once, an answer once a
// module's reply comes (or its time runs out), a long poll of a subscription's
// events, or a stream of them.
class ApiResult
{
public:
    enum class Kind { Ready, Await, LongPoll, Stream };
    // Turns a module's successful reply data into the answer.
    using Finish = std::function<ApiResponse(const QVariant& data)>;

    static ApiResult ready(const ApiResponse& response);
    static ApiResult await(const CMReply<QVariant>& reply, Finish finish);
    static ApiResult longPoll(const QString& subscription, int timeoutMs);
    static ApiResult stream(const QString& subscription);

    Kind kind() const { return m_kind; }
    const ApiResponse& response() const { return m_response; }
    const CMReply<QVariant>& reply() const { return m_reply; }
    const QString& subscription() const { return m_subscription; }
    int timeoutMs() const { return m_timeoutMs; }

    // The answer for a completed reply: its error as is, or finish(data).
    ApiResponse complete() const;

private:
    Kind m_kind = Kind::Ready;
    ApiResponse m_response;
    CMReply<QVariant> m_reply;
    Finish m_finish;
    QString m_subscription;
    int m_timeoutMs = 0;
};
