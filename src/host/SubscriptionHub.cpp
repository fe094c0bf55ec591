#include "SubscriptionHub.h"

#include "SubscriptionEvent.h"

#include <CMRootWorker.h>

#include <QRandomGenerator>

#include <vector>

namespace {

void callAll(const std::vector<std::function<void()>>& wakes)
{
    for (const auto& wake : wakes)
        wake();
}

// A topic set with changes applied; null when it would hold more than limit.
std::shared_ptr<const SubscriptionTopicSet> changed(const SubscriptionTopicSet& topics,
                                                    const QList<SubscriptionTopic>& subscribe,
                                                    const QList<SubscriptionTopic>& unsubscribe, int limit)
{
    auto next = std::make_shared<SubscriptionTopicSet>(topics);
    for (const SubscriptionTopic& topic : unsubscribe)
        next->remove(topic);
    for (const SubscriptionTopic& topic : subscribe)
        next->add(topic);
    if (next->size() > limit)
        return nullptr;
    return next;
}

} // namespace

SubscriptionHub::SubscriptionHub(CMRootWorker* root, const SubscriptionLimits& limits,
                                 std::chrono::milliseconds idleLimit, QObject* parent)
    : QObject(parent), m_limits(limits), m_idleLimit(idleLimit)
{
    // Direct connections: notifications come from every module's thread and
    // the hub must not depend on any event loop to see them.
    connect(root, &CMRootWorker::valueChanged, this,
            [this](const CMPath& path, const VexaValue& newValue, const VexaValue&) { onValueChanged(path, newValue); },
            Qt::DirectConnection);
    connect(root, &CMRootWorker::rowsReset, this, [this](const CMPath& path) { onRowsReset(path); },
            Qt::DirectConnection);
    connect(root, &CMRootWorker::rowsInserted, this,
            [this](const CMPath& path, const QList<int>& rows) { onRowsInserted(path, rows); }, Qt::DirectConnection);
}

SubscriptionHub::Outcome SubscriptionHub::create(const QString& client, const QList<SubscriptionTopic>& topics,
                                                 QString* id)
{
    const auto entry = std::make_shared<Entry>(client, m_limits.queuedBytesPerSubscription);
    const auto topicSet = changed(SubscriptionTopicSet(), topics, {}, m_limits.topicsPerSubscription);
    if (!topicSet)
        return Outcome::TooManyTopics;
    entry->subscription.setTopics(topicSet);
    entry->lastSeen = Clock::now();
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    *id = QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(words), sizeof(words)).toHex());

    QMutexLocker lock(&m_mutex);
    int& held = m_perClient[client];
    if (held >= m_limits.subscriptionsPerClient)
        return Outcome::TooManySubscriptions;
    ++held;
    m_entries.insert(*id, entry);
    return Outcome::Done;
}

SubscriptionHub::Outcome SubscriptionHub::modify(const QString& id, const QList<SubscriptionTopic>& subscribe,
                                                 const QList<SubscriptionTopic>& unsubscribe)
{
    EntryPtr entry;
    {
        QMutexLocker lock(&m_mutex);
        entry = m_entries.value(id);
        if (!entry)
            return Outcome::UnknownSubscription;
        entry->lastSeen = Clock::now();
    }
    // Only topic changes replace the topics, one at a time, so the current
    // ones can be read without the hub's lock while the next are built.
    QMutexLocker updating(&entry->updating);
    const std::shared_ptr<const SubscriptionTopicSet> current = entry->subscription.topics();
    const auto next = changed(*current, subscribe, unsubscribe, m_limits.topicsPerSubscription);
    if (!next)
        return Outcome::TooManyTopics;
    QMutexLocker lock(&m_mutex);
    if (!m_entries.contains(id))
        return Outcome::UnknownSubscription;
    entry->subscription.setTopics(next);
    // current still holds the old topics: they are freed after the lock.
    return Outcome::Done;
}

bool SubscriptionHub::remove(const QString& id)
{
    std::vector<std::function<void()>> wakes;
    EntryPtr entry;
    {
        QMutexLocker lock(&m_mutex);
        entry = takeLocked(id);
        if (!entry)
            return false;
        for (const auto& wake : entry->waiters)
            wakes.push_back(wake);
    }
    callAll(wakes);
    return true;
}

bool SubscriptionHub::contains(const QString& id) const
{
    QMutexLocker lock(&m_mutex);
    return m_entries.contains(id);
}

int SubscriptionHub::count() const
{
    QMutexLocker lock(&m_mutex);
    return m_entries.size();
}

bool SubscriptionHub::inUse(const QString& id) const
{
    QMutexLocker lock(&m_mutex);
    const auto entry = m_entries.value(id);
    return entry && !entry->waiters.isEmpty();
}

bool SubscriptionHub::takeEvents(const QString& id, QList<QByteArray>* events)
{
    QMutexLocker lock(&m_mutex);
    const auto entry = m_entries.value(id);
    if (!entry)
        return false;
    *events = entry->subscription.takeEvents();
    entry->lastSeen = Clock::now();
    return true;
}

quint64 SubscriptionHub::addWaiter(const QString& id, std::function<void()> wake)
{
    QMutexLocker lock(&m_mutex);
    const auto entry = m_entries.value(id);
    if (!entry)
        return 0;
    const quint64 token = m_nextToken++;
    entry->waiters.insert(token, std::move(wake));
    return token;
}

void SubscriptionHub::removeWaiter(const QString& id, quint64 token)
{
    QMutexLocker lock(&m_mutex);
    if (const auto entry = m_entries.value(id)) {
        entry->waiters.remove(token);
        // The idle time counts from the end of the last poll or stream.
        entry->lastSeen = Clock::now();
    }
}

void SubscriptionHub::wakeAll()
{
    std::vector<std::function<void()>> wakes;
    {
        QMutexLocker lock(&m_mutex);
        for (const auto& entry : qAsConst(m_entries)) {
            for (const auto& wake : entry->waiters)
                wakes.push_back(wake);
        }
    }
    callAll(wakes);
}

int SubscriptionHub::dropIdle(Clock::time_point now)
{
    std::vector<EntryPtr> dropped;
    QMutexLocker lock(&m_mutex);
    QStringList idle;
    for (auto it = m_entries.cbegin(); it != m_entries.cend(); ++it) {
        const Entry& entry = *it.value();
        if (entry.waiters.isEmpty() && now - entry.lastSeen > m_idleLimit)
            idle.append(it.key());
    }
    for (const QString& id : qAsConst(idle))
        dropped.push_back(takeLocked(id));
    lock.unlock();
    return int(dropped.size());
}

SubscriptionHub::EntryPtr SubscriptionHub::takeLocked(const QString& id)
{
    EntryPtr entry = m_entries.take(id);
    if (entry) {
        const auto held = m_perClient.find(entry->client);
        if (--held.value() == 0)
            m_perClient.erase(held);
    }
    return entry;
}

void SubscriptionHub::onValueChanged(const CMPath& path, const VexaValue& newValue)
{
    const QString text = path.toEncoded();
    QByteArray event;
    deliver([&](Subscription& s) {
        if (!s.topics()->hasValue(text))
            return false;
        // Written once, shared by every subscription it reaches.
        if (event.isNull())
            event = SubscriptionEvent::value(text, newValue.toVariant());
        s.queue(event);
        return true;
    });
}

void SubscriptionHub::onRowsReset(const CMPath& path)
{
    const QString text = path.toEncoded();
    deliver([&](Subscription& s) {
        const QStringList reached = s.topics()->rowsReachedBy(text);
        // Each event names the subscribed list, which is what the client refetches.
        for (const QString& topic : reached)
            s.queue(SubscriptionEvent::rowsReset(topic));
        return !reached.isEmpty();
    });
}

void SubscriptionHub::onRowsInserted(const CMPath& path, const QList<int>& rows)
{
    const QString text = path.toEncoded();
    QByteArray event;
    deliver([&](Subscription& s) {
        if (!s.topics()->hasRows(text))
            return false;
        if (event.isNull())
            event = SubscriptionEvent::rowsInserted(text, rows);
        s.queue(event);
        return true;
    });
}

void SubscriptionHub::deliver(const std::function<bool(Subscription&)>& offer)
{
    std::vector<std::function<void()>> wakes;
    {
        QMutexLocker lock(&m_mutex);
        for (const auto& entry : qAsConst(m_entries)) {
            if (offer(entry->subscription)) {
                for (const auto& wake : entry->waiters)
                    wakes.push_back(wake);
            }
        }
    }
    callAll(wakes);
}
