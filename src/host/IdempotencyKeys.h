#pragma once

#include <CMReply.h>

#include <QByteArray>

#include <memory>

// The commands sent with an Idempotency-Key header, remembered so that a
// client that lost an answer (a 504, a dropped connection) can send the
// command again without it being carried out twice: the retry gets the first
// command's reply, finished or still running, instead of running it anew.
// A bounded number of keys is kept, each for a bounded time after it was
// first sent, and their finished outcomes within a bounded size (the oldest
// go first); a command withdrawn before it started is forgotten at once, so
// that its retry runs it.
class IdempotencyKeys
{
public:
    static constexpr int MaxKeys = 1000;
    static constexpr int KeepMs = 10 * 60 * 1000;
    static constexpr int MaxKeyBytes = 128;
    // What the kept outcomes may hold in all. The newest is kept even when it
    // alone is larger: its client is the one most likely to retry.
    static constexpr qint64 MaxOutcomeBytes = 16 * 1024 * 1024;

    enum class Claim {
        New,      // an unknown key: run the command with *reply
        Retry,    // the key's command, sent again: answer from *reply
        Mismatch, // the key was sent with another command
        Full      // every kept key belongs to a command still running
    };

    IdempotencyKeys();

    // 1 to MaxKeyBytes visible ASCII characters.
    static bool isValid(const QByteArray& key);

    // Looks key up for a command whose request body is body.
    Claim claim(const QByteArray& key, const QByteArray& body, CMReply<QVariant>* reply);

    // The memory the finished outcomes kept now hold, as MaxOutcomeBytes counts it.
    qint64 outcomeBytes() const;

private:
    struct State;
    // Shared with the callbacks of replies, which may complete after the keys are gone.
    std::shared_ptr<State> m_state;
};
