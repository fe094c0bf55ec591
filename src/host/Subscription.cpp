#include "Subscription.h"

#include "SubscriptionEvent.h"

Subscription::Subscription(int maxQueuedBytes)
    : m_maxQueuedBytes(maxQueuedBytes), m_topics(std::make_shared<const SubscriptionTopicSet>())
{
}

void Subscription::queue(const QByteArray& event)
{
    if (m_queuedBytes + event.size() > m_maxQueuedBytes) {
        // The client must refetch anyway, which makes every waiting event
        // useless: they all go at once, and the memory with them.
        m_dropped += qint64(m_events.size());
        m_events.clear();
        m_queuedBytes = 0;
        if (event.size() > m_maxQueuedBytes) {
            ++m_dropped;
            return;
        }
    }
    m_events.push_back(event);
    m_queuedBytes += event.size();
}

QList<QByteArray> Subscription::takeEvents()
{
    QList<QByteArray> events;
    events.reserve(int(m_events.size()) + 1);
    if (m_dropped > 0)
        events.append(SubscriptionEvent::overflow(m_dropped));
    for (const QByteArray& event : m_events)
        events.append(event);
    m_events.clear();
    m_queuedBytes = 0;
    m_dropped = 0;
    return events;
}
