#pragma once

#include "SubscriptionTopic.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <deque>

// One client's subscription: the topics it listens to and the events waiting
// for it. Not thread-safe: the hub guards it.
class Subscription
{
public:
    explicit Subscription(int maxQueued);

    const QList<SubscriptionTopic>& topics() const { return m_topics; }
    void subscribe(const SubscriptionTopic& topic);
    void unsubscribe(const SubscriptionTopic& topic);

    // Each queues one event per topic it reaches; true when it queued any.
    // Paths are in encoded text form.
    bool offerValue(const QString& path, const QVariant& newValue);
    bool offerRowsReset(const QString& path);
    bool offerRowsInserted(const QString& path, const QList<int>& rows);

    bool hasEvents() const { return !m_events.empty(); }
    // The waiting events, oldest first; the queue is empty afterwards.
    QVariantList takeEvents();
    // How many events were dropped because the queue was full.
    int droppedEvents() const { return m_dropped; }

    // True when a reset of resetPath reaches the rows at topicPath: the same
    // path, or one continuing it after a '/' or a '?'.
    static bool resetReaches(const QString& resetPath, const QString& topicPath);

private:
    bool hasTopic(SubscriptionTopic::Kind kind, const QString& path) const;
    void queue(const QVariantHash& event);

    int m_maxQueued;
    int m_dropped = 0;
    QList<SubscriptionTopic> m_topics;
    std::deque<QVariantHash> m_events;
};
