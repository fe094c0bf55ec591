#include "SubscriptionApi.h"

#include "ApiInput.h"
#include "SubscriptionHub.h"

SubscriptionApi::SubscriptionApi(SubscriptionHub* hub) : m_hub(hub) {}

ApiResult SubscriptionApi::create(const ApiRequest& request)
{
    QString error;
    QVariantHash body;
    // An empty body makes a subscription without topics, to be filled by PATCH.
    if (!request.body().trimmed().isEmpty() && !ApiInput::readObject(request.body(), &body, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    QList<SubscriptionTopic> topics;
    if (!SubscriptionTopic::listFromVariant(body.value(QStringLiteral("subscribe")), &topics, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    QString id;
    const SubscriptionHub::Outcome outcome = m_hub->create(request.client(), topics, &id);
    if (outcome != SubscriptionHub::Outcome::Done)
        return ApiResult::ready(refusal(outcome, id));
    return ApiResult::ready(ApiResponse::json(201, QVariantHash{{QStringLiteral("id"), id}}));
}

ApiResult SubscriptionApi::modify(const ApiRequest& request, const QString& id)
{
    QString error;
    QVariantHash body;
    if (!ApiInput::readObject(request.body(), &body, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    QList<SubscriptionTopic> subscribe;
    QList<SubscriptionTopic> unsubscribe;
    if (!SubscriptionTopic::listFromVariant(body.value(QStringLiteral("subscribe")), &subscribe, &error)
        || !SubscriptionTopic::listFromVariant(body.value(QStringLiteral("unsubscribe")), &unsubscribe, &error))
        return ApiResult::ready(ApiResponse::badRequest(error));
    const SubscriptionHub::Outcome outcome = m_hub->modify(id, subscribe, unsubscribe);
    if (outcome != SubscriptionHub::Outcome::Done)
        return ApiResult::ready(refusal(outcome, id));
    return ApiResult::ready(ApiResponse::json(200, QVariantHash{{QStringLiteral("id"), id}}));
}

ApiResult SubscriptionApi::remove(const QString& id)
{
    if (!m_hub->remove(id))
        return ApiResult::ready(unknownSubscription(id));
    return ApiResult::ready(ApiResponse::json(200, QVariantHash{{QStringLiteral("id"), id}}));
}

ApiResult SubscriptionApi::events(const ApiRequest& request)
{
    const QString id = request.argument(QStringLiteral("subscription"));
    if (id.isEmpty())
        return ApiResult::ready(ApiResponse::badRequest(QStringLiteral("subscription is missing")));
    int seconds = DefaultPollSeconds;
    QString error;
    if (request.hasArgument(QStringLiteral("timeout"))
        && !ApiInput::readInt(request.argument(QStringLiteral("timeout")), 0, MaxPollSeconds, &seconds, &error))
        return ApiResult::ready(ApiResponse::badRequest(QStringLiteral("timeout: ") + error));
    if (!m_hub->contains(id))
        return ApiResult::ready(unknownSubscription(id));
    return ApiResult::longPoll(id, seconds * 1000);
}

ApiResult SubscriptionApi::stream(const ApiRequest& request)
{
    const QString id = request.argument(QStringLiteral("subscription"));
    if (id.isEmpty())
        return ApiResult::ready(ApiResponse::badRequest(QStringLiteral("subscription is missing")));
    if (!m_hub->contains(id))
        return ApiResult::ready(unknownSubscription(id));
    return ApiResult::stream(id);
}

ApiResponse SubscriptionApi::refusal(SubscriptionHub::Outcome outcome, const QString& id) const
{
    const SubscriptionLimits& limits = m_hub->limits();
    switch (outcome) {
    case SubscriptionHub::Outcome::TooManySubscriptions:
        return ApiResponse::error(429, TooManySubscriptionsName(), QStringLiteral("Too many subscriptions"),
                                  QStringLiteral("A client holds at most %1 subscriptions; delete one first")
                                      .arg(limits.subscriptionsPerClient));
    case SubscriptionHub::Outcome::TooManyTopics:
        return ApiResponse::error(429, TooManyTopicsName(), QStringLiteral("Too many topics"),
                                  QStringLiteral("A subscription has at most %1 topics; nothing was changed")
                                      .arg(limits.topicsPerSubscription));
    case SubscriptionHub::Outcome::UnknownSubscription:
    case SubscriptionHub::Outcome::Done:
        break;
    }
    return unknownSubscription(id);
}

ApiResponse SubscriptionApi::unknownSubscription(const QString& id)
{
    return ApiResponse::error(404, ApiResponse::InvalidSubscriptionName(), QStringLiteral("Unknown subscription"),
                              QStringLiteral("No subscription has the id ") + id);
}
