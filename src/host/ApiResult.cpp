#include "ApiResult.h"

ApiResult ApiResult::ready(const ApiResponse& response)
{
    ApiResult r;
    r.m_kind = Kind::Ready;
    r.m_response = response;
    return r;
}

ApiResult ApiResult::await(const CMReply<QVariant>& reply, Finish finish)
{
    ApiResult r;
    r.m_kind = Kind::Await;
    r.m_reply = reply;
    r.m_finish = std::move(finish);
    return r;
}

ApiResult ApiResult::longPoll(const QString& subscription, int timeoutMs)
{
    ApiResult r;
    r.m_kind = Kind::LongPoll;
    r.m_subscription = subscription;
    r.m_timeoutMs = timeoutMs;
    return r;
}

ApiResult ApiResult::stream(const QString& subscription)
{
    ApiResult r;
    r.m_kind = Kind::Stream;
    r.m_subscription = subscription;
    return r;
}

ApiResponse ApiResult::complete() const
{
    if (m_reply.hasError())
        return ApiResponse::fromError(m_reply.error());
    return m_finish ? m_finish(m_reply.data()) : ApiResponse::json(200, m_reply.data());
}
