#pragma once

#include "Subscription.h"
#include "SubscriptionLimits.h"
#include "SubscriptionTopic.h"

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
// Changes of topics are prepared outside the hub's lock, so a client adding
// thousands of topics never holds up the delivery of events.
// Thread-safe.
class SubscriptionHub : public QObject
{
    Q_OBJECT
public:
    using Clock = std::chrono::steady_clock;

    enum class Outcome { Done, UnknownSubscription, TooManySubscriptions, TooManyTopics };

    SubscriptionHub(CMRootWorker* root, const SubscriptionLimits& limits = SubscriptionLimits(),
                    std::chrono::milliseconds idleLimit = std::chrono::seconds(60), QObject* parent = nullptr);

    const SubscriptionLimits& limits() const { return m_limits; }

    // A new subscription of client listening to topics; its id is
    // unguessable. Nothing is made when a limit would be passed.
    Outcome create(const QString& client, const QList<SubscriptionTopic>& topics, QString* id);
    // Adds and removes topics; nothing changes when a limit would be passed.
    Outcome modify(const QString& id, const QList<SubscriptionTopic>& subscribe,
                   const QList<SubscriptionTopic>& unsubscribe);
    // Ends a subscription and wakes its waiters; false for an unknown id.
    bool remove(const QString& id);
    bool contains(const QString& id) const;
    int count() const;
    // True while a long poll or stream waits on the subscription.
    bool inUse(const QString& id) const;

    // Moves the waiting events (JSON texts) into *events; false for an unknown id.
    bool takeEvents(const QString& id, QList<QByteArray>* events);
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
        Entry(const QString& client, int maxQueuedBytes) : client(client), subscription(maxQueuedBytes) {}
        const QString client;
        Subscription subscription;
        QHash<quint64, std::function<void()>> waiters;
        Clock::time_point lastSeen;
        // Serialises the topic changes of this subscription, outside the hub's lock.
        QMutex updating;
    };
    using EntryPtr = std::shared_ptr<Entry>;

    void onValueChanged(const CMPath& path, const VexaValue& newValue);
    void onRowsReset(const CMPath& path);
    void onRowsInserted(const CMPath& path, const QList<int>& rows);
    // Offers a change to every subscription, then wakes the waiters of those that queued an event.
    void deliver(const std::function<bool(Subscription&)>& offer);
    // Takes the entry out of the hub; the caller lets it go after the lock.
    EntryPtr takeLocked(const QString& id);

    const SubscriptionLimits m_limits;
    const std::chrono::milliseconds m_idleLimit;
    mutable QMutex m_mutex;
    QHash<QString, EntryPtr> m_entries;
    QHash<QString, int> m_perClient;
    quint64 m_nextToken = 1;
};
