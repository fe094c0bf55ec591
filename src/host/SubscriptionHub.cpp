#include "SubscriptionHub.h"

#include <CMRootWorker.h>

#include <QRandomGenerator>

#include <vector>

namespace {

void callAll(const std::vector<std::function<void()>>& wakes)
{
    for (const auto& wake : wakes)
        wake();
}

} // namespace

SubscriptionHub::SubscriptionHub(CMRootWorker* root, int maxQueued, std::chrono::milliseconds idleLimit,
                                 QObject* parent)
    : QObject(parent), m_maxQueued(maxQueued), m_idleLimit(idleLimit)
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

QString SubscriptionHub::create(const QList<SubscriptionTopic>& topics)
{
    quint32 words[4];
    QRandomGenerator::system()->fillRange(words);
    const QString id = QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(words), sizeof(words)).toHex());
    auto entry = std::make_shared<Entry>(m_maxQueued);
    for (const SubscriptionTopic& topic : topics)
        entry->subscription.subscribe(topic);
    entry->lastSeen = Clock::now();
    QMutexLocker lock(&m_mutex);
    m_entries.insert(id, entry);
    return id;
}

bool SubscriptionHub::modify(const QString& id, const QList<SubscriptionTopic>& subscribe,
                             const QList<SubscriptionTopic>& unsubscribe)
{
    QMutexLocker lock(&m_mutex);
    const auto entry = m_entries.value(id);
    if (!entry)
        return false;
    for (const SubscriptionTopic& topic : unsubscribe)
        entry->subscription.unsubscribe(topic);
    for (const SubscriptionTopic& topic : subscribe)
        entry->subscription.subscribe(topic);
    entry->lastSeen = Clock::now();
    return true;
}

bool SubscriptionHub::remove(const QString& id)
{
    std::vector<std::function<void()>> wakes;
    {
        QMutexLocker lock(&m_mutex);
        const auto entry = m_entries.take(id);
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

bool SubscriptionHub::takeEvents(const QString& id, QVariantList* events)
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
    QMutexLocker lock(&m_mutex);
    int dropped = 0;
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        const Entry& entry = *it.value();
        if (entry.waiters.isEmpty() && now - entry.lastSeen > m_idleLimit) {
            it = m_entries.erase(it);
            ++dropped;
        } else {
            ++it;
        }
    }
    return dropped;
}

void SubscriptionHub::onValueChanged(const CMPath& path, const VexaValue& newValue)
{
    const QString text = path.toEncoded();
    const QVariant value = newValue.toVariant();
    deliver([&](Subscription& s) { return s.offerValue(text, value); });
}

void SubscriptionHub::onRowsReset(const CMPath& path)
{
    const QString text = path.toEncoded();
    deliver([&](Subscription& s) { return s.offerRowsReset(text); });
}

void SubscriptionHub::onRowsInserted(const CMPath& path, const QList<int>& rows)
{
    const QString text = path.toEncoded();
    deliver([&](Subscription& s) { return s.offerRowsInserted(text, rows); });
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
