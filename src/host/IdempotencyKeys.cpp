#include "IdempotencyKeys.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QHash>
#include <QMutex>

namespace {

struct Entry
{
    // A digest, not the body: bodies may be megabytes.
    QByteArray fingerprint;
    CMReply<QVariant> reply;
    qint64 sentMs = 0;
};

QByteArray fingerprintOf(const QByteArray& body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Sha256);
}

} // namespace

struct IdempotencyKeys::State
{
    QMutex mutex;
    QHash<QByteArray, Entry> entries;
    QElapsedTimer clock;

    bool expired(const Entry& entry, qint64 nowMs) const
    {
        return nowMs - entry.sentMs > KeepMs && entry.reply.isFinished();
    }

    // Drops what has expired; when still full, the oldest finished entry.
    bool makeRoom(qint64 nowMs)
    {
        for (auto it = entries.begin(); it != entries.end();)
            it = expired(it.value(), nowMs) ? entries.erase(it) : std::next(it);
        if (entries.size() < MaxKeys)
            return true;
        auto oldest = entries.end();
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            if (it->reply.isFinished() && (oldest == entries.end() || it->sentMs < oldest->sentMs))
                oldest = it;
        }
        if (oldest == entries.end())
            return false;
        entries.erase(oldest);
        return true;
    }
};

IdempotencyKeys::IdempotencyKeys() : m_state(std::make_shared<State>())
{
    m_state->clock.start();
}

bool IdempotencyKeys::isValid(const QByteArray& key)
{
    if (key.isEmpty() || key.size() > MaxKeyBytes)
        return false;
    for (const char c : key) {
        if (c < 0x21 || c > 0x7e)
            return false;
    }
    return true;
}

IdempotencyKeys::Claim IdempotencyKeys::claim(const QByteArray& key, const QByteArray& body, CMReply<QVariant>* reply)
{
    const QByteArray fingerprint = fingerprintOf(body);
    QMutexLocker lock(&m_state->mutex);
    const qint64 nowMs = m_state->clock.elapsed();
    auto found = m_state->entries.find(key);
    if (found != m_state->entries.end() && m_state->expired(found.value(), nowMs)) {
        m_state->entries.erase(found);
        found = m_state->entries.end();
    }
    if (found != m_state->entries.end()) {
        if (found->fingerprint != fingerprint)
            return Claim::Mismatch;
        *reply = found->reply;
        return Claim::Retry;
    }
    if (m_state->entries.size() >= MaxKeys && !m_state->makeRoom(nowMs))
        return Claim::Full;
    m_state->entries.insert(key, Entry{fingerprint, *reply, nowMs});

    // A command withdrawn unstarted was not carried out: its retry must run it.
    // The callback holds no reply: a reply that never completes keeps nothing alive.
    const std::weak_ptr<State> weak = m_state;
    reply->onFinished([weak, key]() {
        const auto state = weak.lock();
        if (!state)
            return;
        QMutexLocker lock(&state->mutex);
        const auto it = state->entries.find(key);
        if (it != state->entries.end() && it->reply.isCancelled())
            state->entries.erase(it);
    });
    return Claim::New;
}
