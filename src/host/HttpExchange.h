#pragma once

#include "ApiResult.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <mutex>

struct MHD_Connection;

// One request and its answer on a connection, from the first header to the
// last byte sent. The server's callbacks for a connection run one at a time,
// so the exchange's stage, body and result need no lock; what other threads
// touch (wake-ups, the closed flag, the timer flags) is guarded or atomic.
//
// Waiting without holding a thread: an exchange that must wait (for a
// module's reply, for events) suspends its connection, and whoever has what
// it waits for calls wake(), which resumes it. A wake-up may come before the
// suspension: clearWake() marks the start of a check, and
// suspendUnlessWoken() suspends only if no wake-up came since.
class HttpExchange
{
public:
    enum class Stage { Receiving, Awaiting, Polling, Streaming, Answered };

    // Made as soon as the request line is read; targetBytes is the length of
    // its whole target, query included.
    HttpExchange(MHD_Connection* connection, int targetBytes, int maxBodyBytes);

    MHD_Connection* connection() const { return m_connection; }
    int targetBytes() const { return m_targetBytes; }
    // Known once the headers are read: empty until then.
    void setRequest(const QByteArray& method, const QByteArray& url);
    const QByteArray& method() const { return m_method; }
    const QByteArray& url() const { return m_url; }

    // Keeps the body up to the limit; anything beyond is read and dropped.
    void appendBody(const char* data, size_t size);
    bool bodyTooLarge() const { return m_bodyTooLarge; }
    const QByteArray& body() const { return m_body; }

    Stage stage() const { return m_stage; }
    void setStage(Stage stage) { m_stage = stage; }
    const ApiResult& result() const { return m_result; }
    void setResult(const ApiResult& result) { m_result = result; }

    // From a callback of this connection only.
    void clearWake();
    // From a callback of this connection only; false (and not suspended)
    // when a wake-up came since clearWake().
    bool suspendUnlessWoken();
    // From any thread: resumes the connection if it is suspended.
    void wake();
    // The connection is gone: later wake-ups do nothing.
    void close();
    bool isClosed() const;

    // Set by the timer when the wait's time is up.
    void setTimedOut() { m_timedOut = true; }
    bool timedOut() const { return m_timedOut; }
    // Set by the timer when a stream should send a keep-alive line.
    void setKeepAliveDue() { m_keepAliveDue = true; }
    bool takeKeepAliveDue() { return m_keepAliveDue.exchange(false); }

    // What the exchange holds on to until it ends.
    quint64 timerId() const { return m_timerId; }
    void setTimerId(quint64 id) { m_timerId = id; }
    quint64 waiterToken() const { return m_waiterToken; }
    void setWaiterToken(quint64 token) { m_waiterToken = token; }

    // Stream bytes produced but not yet handed to the connection.
    QByteArray& pendingStream() { return m_pendingStream; }

    // A poll that waited for events and got some gathers for a moment more:
    // the events it took meanwhile are held here, and the wake-ups of new
    // events are left to the gathering's timer, which ends it.
    enum class Gathering { NotYet, Running, Over };
    bool pollWaited() const { return m_pollWaited; }
    void setPollWaited() { m_pollWaited = true; }
    Gathering gathering() const { return m_gathering; }
    void setGathering(Gathering state) { m_gathering = state; }
    QList<QByteArray>& heldEvents() { return m_heldEvents; }

private:
    MHD_Connection* const m_connection;
    const int m_targetBytes;
    QByteArray m_method;
    QByteArray m_url;
    const int m_maxBodyBytes;
    QByteArray m_body;
    bool m_bodyTooLarge = false;
    Stage m_stage = Stage::Receiving;
    ApiResult m_result;

    mutable std::mutex m_mutex;
    bool m_suspended = false;
    bool m_woken = false;
    bool m_closed = false;

    std::atomic<bool> m_timedOut{false};
    std::atomic<bool> m_keepAliveDue{false};
    std::atomic<quint64> m_timerId{0};
    quint64 m_waiterToken = 0;
    QByteArray m_pendingStream;
    bool m_pollWaited = false;
    std::atomic<Gathering> m_gathering{Gathering::NotYet};
    QList<QByteArray> m_heldEvents;
};
