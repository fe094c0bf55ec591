#pragma once

#include "Subscription.h"

#include <CMPath.h>
#include <VexaValue.h>

#include <QHash>
#include <QMutex>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

class CMRootWorker;

// Every client subscription of the HTTP API. The root's change signals arrive
// here directly on whichever thread emitted them and are queued as events for
// the subscriptions they reach. Requests waiting for events (long polls,
// streams) register a waiter, which is called, outside the hub's lock and on
// the notifying thread, whenever their subscription gets events or ends.
// Thread-safe.
class SubscriptionHub : public QObject
{
    Q_OBJECT
public:
    using Clock = std::chrono::steady_clock;

    SubscriptionHub(CMRootWorker* root, int maxQueued = 1000,
                    std::chrono::milliseconds idleLimit = std::chrono::seconds(60), QObject* parent = nullptr);

    // A new subscription listening to topics; its id is unguessable.
    QString create(const QList<SubscriptionTopic>& topics);
    // Adds and removes topics; false for an unknown id.
    bool modify(const QString& id, const QList<SubscriptionTopic>& subscribe,
                const QList<SubscriptionTopic>& unsubscribe);
    // Ends a subscription and wakes its waiters; false for an unknown id.
    bool remove(const QString& id);
    bool contains(const QString& id) const;
    int count() const;
    // True while a long poll or stream waits on the subscription.
    bool inUse(const QString& id) const;

    // Moves the waiting events into *events; false for an unknown id.
    bool takeEvents(const QString& id, QVariantList* events);
    // Registers wake for the subscription's events; 0 for an unknown id. A
    // subscription with a waiter is in use and never dropped as idle.
    quint64 addWaiter(const QString& id, std::function<void()> wake);
    void removeWaiter(const QString& id, quint64 token);
    // Wakes every waiter (the server is stopping).
    void wakeAll();

    // Drops the subscriptions not in use whose last poll or stream ended
    // longer than the idle limit before now; returns how many.
    int dropIdle(Clock::time_point now);

private:
    struct Entry
    {
        explicit Entry(int maxQueued) : subscription(maxQueued) {}
        Subscription subscription;
        QHash<quint64, std::function<void()>> waiters;
        Clock::time_point lastSeen;
    };

    void onValueChanged(const CMPath& path, const VexaValue& newValue);
    void onRowsReset(const CMPath& path);
    void onRowsInserted(const CMPath& path, const QList<int>& rows);
    // Offers a change to every subscription, then wakes the waiters of those that queued an event.
    void deliver(const std::function<bool(Subscription&)>& offer);

    const int m_maxQueued;
    const std::chrono::milliseconds m_idleLimit;
    mutable QMutex m_mutex;
    QHash<QString, std::shared_ptr<Entry>> m_entries;
    quint64 m_nextToken = 1;
};
