#pragma once

#include "SubscriptionTopicSet.h"

#include <QByteArray>
#include <QList>

#include <deque>
#include <memory>

// One client's subscription: the topics it listens to and the events waiting
// for it, as JSON text. The waiting events are bounded by their bytes: an
// event that does not fit drops every waiting one, and the client then reads
// an overflow event first, which tells it to refetch what it watches; the
// events queued after it follow in order. Not thread-safe: the hub guards it.
class Subscription
{
public:
    explicit Subscription(int maxQueuedBytes);

    // The topics are replaced whole, never changed in place, so that a
    // change of many topics is prepared without the hub's lock.
    const std::shared_ptr<const SubscriptionTopicSet>& topics() const { return m_topics; }
    void setTopics(std::shared_ptr<const SubscriptionTopicSet> topics) { m_topics = std::move(topics); }

    void queue(const QByteArray& event);
    bool hasEvents() const { return m_dropped > 0 || !m_events.empty(); }
    // The waiting events, oldest first (an overflow event leading them when
    // some were dropped); the queue is empty afterwards.
    QList<QByteArray> takeEvents();

private:
    const int m_maxQueuedBytes;
    std::shared_ptr<const SubscriptionTopicSet> m_topics;
    std::deque<QByteArray> m_events;
    int m_queuedBytes = 0;
    // Dropped since the client last read its events.
    qint64 m_dropped = 0;
};
