#include "Subscription.h"

namespace {

const QString kPath = QStringLiteral("path");
const QString kKind = QStringLiteral("kind");
const QString kRows = QStringLiteral("rows");

} // namespace

Subscription::Subscription(int maxQueued) : m_maxQueued(qMax(1, maxQueued)) {}

void Subscription::subscribe(const SubscriptionTopic& topic)
{
    if (!m_topics.contains(topic))
        m_topics.append(topic);
}

void Subscription::unsubscribe(const SubscriptionTopic& topic)
{
    m_topics.removeAll(topic);
}

bool Subscription::offerValue(const QString& path, const QVariant& newValue)
{
    if (!hasTopic(SubscriptionTopic::Kind::Value, path))
        return false;
    queue({{kPath, path}, {kKind, QStringLiteral("value")}, {QStringLiteral("value"), newValue}});
    return true;
}

bool Subscription::offerRowsReset(const QString& path)
{
    bool queued = false;
    for (const SubscriptionTopic& topic : m_topics) {
        // The event names the subscribed list, which is what the client refetches.
        if (topic.kind() == SubscriptionTopic::Kind::Rows && resetReaches(path, topic.path())) {
            queue({{kPath, topic.path()}, {kKind, kRows}, {QStringLiteral("change"), QStringLiteral("reset")}});
            queued = true;
        }
    }
    return queued;
}

bool Subscription::offerRowsInserted(const QString& path, const QList<int>& rows)
{
    if (!hasTopic(SubscriptionTopic::Kind::Rows, path))
        return false;
    QVariantList rowList;
    for (int row : rows)
        rowList.append(row);
    queue({{kPath, path}, {kKind, kRows}, {QStringLiteral("change"), QStringLiteral("insert")}, {kRows, rowList}});
    return true;
}

QVariantList Subscription::takeEvents()
{
    QVariantList events;
    events.reserve(int(m_events.size()));
    for (const QVariantHash& event : m_events)
        events.append(event);
    m_events.clear();
    return events;
}

bool Subscription::resetReaches(const QString& resetPath, const QString& topicPath)
{
    if (!topicPath.startsWith(resetPath))
        return false;
    if (topicPath.size() == resetPath.size() || resetPath.endsWith(QLatin1Char('/')))
        return true;
    const QChar next = topicPath.at(resetPath.size());
    return next == QLatin1Char('/') || next == QLatin1Char('?');
}

bool Subscription::hasTopic(SubscriptionTopic::Kind kind, const QString& path) const
{
    for (const SubscriptionTopic& topic : m_topics) {
        if (topic.kind() == kind && topic.path() == path)
            return true;
    }
    return false;
}

void Subscription::queue(const QVariantHash& event)
{
    // A client that stopped reading must not make the host grow without
    // bound; the oldest events are the least useful ones.
    while (int(m_events.size()) >= m_maxQueued) {
        m_events.pop_front();
        ++m_dropped;
    }
    m_events.push_back(event);
}
