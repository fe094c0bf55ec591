#pragma once

#include "ApiRequest.h"
#include "ApiResult.h"
#include "SubscriptionHub.h"

// The subscription calls: create, change and end subscriptions, and read
// their events by long poll or as a stream.
class SubscriptionApi
{
public:
    // Long polls wait at most this long, whatever the client asks.
    static constexpr int MaxPollSeconds = 60;
    static constexpr int DefaultPollSeconds = 30;

    explicit SubscriptionApi(SubscriptionHub* hub);

    // POST /api/v1/subscriptions {"subscribe": [{"path", "kind"}]}
    ApiResult create(const ApiRequest& request);
    // PATCH /api/v1/subscriptions/ID {"subscribe": [...], "unsubscribe": [...]}
    ApiResult modify(const ApiRequest& request, const QString& id);
    // DELETE /api/v1/subscriptions/ID
    ApiResult remove(const QString& id);
    // GET /api/v1/events?subscription=ID&timeout=S
    ApiResult events(const ApiRequest& request);
    // GET /api/v1/events/stream?subscription=ID
    ApiResult stream(const ApiRequest& request);

    static ApiResponse unknownSubscription(const QString& id);

    // Errors for a client past one of its limits (429).
    static QString TooManySubscriptionsName() { return QStringLiteral("tooManySubscriptions"); }
    static QString TooManyTopicsName() { return QStringLiteral("tooManyTopics"); }

private:
    ApiResponse refusal(SubscriptionHub::Outcome outcome, const QString& id) const;

    SubscriptionHub* m_hub;
};
