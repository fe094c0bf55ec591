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
    qint64 outcomeBytes = 0;
    bool counted = false; // outcomeBytes holds the finished reply's size
};

QByteArray fingerprintOf(const QByteArray& body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Sha256);
}

// The memory a command's outcome holds, near enough to bound the sum: the
// texts and a fixed cost per value.
constexpr qint64 kBytesPerValue = 32;

qint64 bytesOf(const QVariant& value);

template <class Dictionary>
qint64 bytesOfDictionary(const Dictionary& dictionary)
{
    qint64 bytes = kBytesPerValue;
    for (auto it = dictionary.begin(); it != dictionary.end(); ++it)
        bytes += kBytesPerValue + 2 * qint64(it.key().size()) + bytesOf(it.value());
    return bytes;
}

qint64 bytesOf(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return kBytesPerValue + 2 * qint64(value.toString().size());
    case QMetaType::QByteArray:
        return kBytesPerValue + value.toByteArray().size();
    case QMetaType::QVariantList: {
        qint64 bytes = kBytesPerValue;
        for (const QVariant& element : value.toList())
            bytes += bytesOf(element);
        return bytes;
    }
    case QMetaType::QVariantHash:
        return bytesOfDictionary(value.toHash());
    case QMetaType::QVariantMap:
        return bytesOfDictionary(value.toMap());
    default:
        return kBytesPerValue;
    }
}

} // namespace

struct IdempotencyKeys::State
{
    QMutex mutex;
    QHash<QByteArray, Entry> entries;
    qint64 outcomeBytes = 0;
    QElapsedTimer clock;

    QHash<QByteArray, Entry>::iterator forget(QHash<QByteArray, Entry>::iterator it)
    {
        outcomeBytes -= it->outcomeBytes;
        return entries.erase(it);
    }

    // The oldest entry whose command has finished, other than keep's.
    QHash<QByteArray, Entry>::iterator oldestFinished(const QByteArray& keep = QByteArray())
    {
        auto oldest = entries.end();
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            if (it->reply.isFinished() && it.key() != keep && (oldest == entries.end() || it->sentMs < oldest->sentMs))
                oldest = it;
        }
        return oldest;
    }

    bool expired(const Entry& entry, qint64 nowMs) const
    {
        return nowMs - entry.sentMs > KeepMs && entry.reply.isFinished();
    }

    // Drops what has expired; when still full, the oldest finished entry.
    bool makeRoom(qint64 nowMs)
    {
        for (auto it = entries.begin(); it != entries.end();)
            it = expired(it.value(), nowMs) ? forget(it) : std::next(it);
        if (entries.size() < MaxKeys)
            return true;
        const auto oldest = oldestFinished();
        if (oldest == entries.end())
            return false;
        forget(oldest);
        return true;
    }

    // Counts the finished outcome of key's command, then drops the oldest
    // others while the outcomes kept hold too much.
    void countOutcome(const QByteArray& key)
    {
        // The entry may be a later command's under the same key, which counts itself.
        const auto it = entries.find(key);
        if (it == entries.end() || !it->reply.isFinished() || it->counted)
            return;
        if (it->reply.isCancelled()) {
            forget(it);
            return;
        }
        it->counted = true;
        it->outcomeBytes = it->reply.hasError() ? bytesOf(it->reply.error().message()) : bytesOf(it->reply.data());
        outcomeBytes += it->outcomeBytes;
        while (outcomeBytes > MaxOutcomeBytes) {
            const auto oldest = oldestFinished(key);
            if (oldest == entries.end())
                break;
            forget(oldest);
        }
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
        m_state->forget(found);
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
        if (const auto state = weak.lock()) {
            QMutexLocker lock(&state->mutex);
            state->countOutcome(key);
        }
    });
    return Claim::New;
}

qint64 IdempotencyKeys::outcomeBytes() const
{
    QMutexLocker lock(&m_state->mutex);
    return m_state->outcomeBytes;
}
