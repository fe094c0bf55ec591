#pragma once

#include <microhttpd.h>

#include <QMutex>
#include <QSet>
#include <QString>
#include <QWaitCondition>

#include <atomic>
#include <memory>

class ApiResponse;
class ApiRouter;
class CMRootWorker;
class HttpExchange;
class SubscriptionHub;
class TimerThread;

// The HTTP API of the host, served by libmicrohttpd from a small pool of
// threads. Ordinary calls hand their request to a module and suspend their
// connection until the reply (or the reply timeout) resumes it; long polls and
// event streams suspend theirs until events arrive. No pool thread ever sits
// waiting, so waiting clients never hold up others.
class HttpServer
{
public:
    static constexpr int PoolThreads = 4;
    // Connections in all, and from one address: one client cannot take the
    // slots of every other.
    static constexpr unsigned int MaxConnections = 4000;
    static constexpr unsigned int MaxConnectionsPerAddress = 1000;
    // The longest request target (path and query) taken; a longer one is
    // answered 414. Each connection may use MemoryPerConnection for the
    // request line and headers, room for such a target with headers; no
    // more, as libmicrohttpd clears a connection's whole memory for each
    // request it reads (with 128 KiB that was a sixth of the host's time
    // under 250 subscribers).
    static constexpr int MaxTargetBytes = 16 * 1024;
    static constexpr size_t MemoryPerConnection = 48 * 1024;
    // An open stream sends a comment line this often, so that proxies and
    // clients see it alive and a vanished client is noticed.
    static constexpr int KeepAliveMs = 15000;
    // How long a poll that waited gathers events once the first came.
    static constexpr int GatherEventsMs = 10;

    // Bodies above maxBodyBytes are refused with 413.
    HttpServer(CMRootWorker* root, int replyTimeoutMs, int maxBodyBytes);
    ~HttpServer();

    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    // Listens on address (IPv4 or IPv6 literal) and port (0: any free port).
    bool start(const QString& address, quint16 port, QString* error);
    // Stops accepting (new connections are refused, those already waiting
    // are served), answers the requests in flight (long polls with what
    // they have, module calls when their reply or timeout comes), ends the
    // streams, then shuts down. Safe to call twice.
    void stop();
    // The port bound by start().
    quint16 port() const { return m_port; }

    SubscriptionHub* hub() const { return m_hub.get(); }

private:
    using ExchangePtr = std::shared_ptr<HttpExchange>;

    static void* onRequestLine(void* cls, const char* target, MHD_Connection* connection);
    static MHD_Result onAccess(void* cls, MHD_Connection* connection, const char* url, const char* method,
                               const char* version, const char* uploadData, size_t* uploadDataSize, void** conCls);
    static void onCompleted(void* cls, MHD_Connection* connection, void** conCls,
                            MHD_RequestTerminationCode termination);
    static ssize_t onStreamRead(void* cls, uint64_t pos, char* buf, size_t max);
    static void onStreamFree(void* cls);
    static void onLog(void* cls, const char* format, va_list args);

    MHD_Result begin(const ExchangePtr& exchange);
    MHD_Result beginAwait(const ExchangePtr& exchange);
    MHD_Result beginStream(const ExchangePtr& exchange);
    MHD_Result continueAwait(const ExchangePtr& exchange);
    MHD_Result continuePoll(const ExchangePtr& exchange);
    ssize_t readStream(const ExchangePtr& exchange, char* buf, size_t max);
    MHD_Result respond(const ExchangePtr& exchange, const ApiResponse& response);
    // Lets go of the exchange's waiter and timer.
    void release(const ExchangePtr& exchange);
    void completed(const ExchangePtr& exchange);
    void scheduleKeepAlive(const std::weak_ptr<HttpExchange>& exchange);
    void scheduleIdleSweep();
    int openConnections() const;
    int exchangeCount();
    // Waits until no exchange is left or msecs passed; true when none is left.
    bool waitForExchanges(int msecs);

    ApiResponse timeoutResponse(const ExchangePtr& exchange) const;

    CMRootWorker* m_root;
    const int m_replyTimeoutMs;
    const int m_maxBodyBytes;
    std::unique_ptr<TimerThread> m_timers;
    std::unique_ptr<SubscriptionHub> m_hub;
    std::unique_ptr<ApiRouter> m_router;
    MHD_Daemon* m_daemon = nullptr;
    quint16 m_port = 0;
    std::atomic<bool> m_stopping{false};
    // Set when stopping has waited long enough: every waiting request answers.
    std::atomic<bool> m_forceAnswer{false};

    QMutex m_exchangesMutex;
    QWaitCondition m_exchangesDone;
    QSet<HttpExchange*> m_exchanges;
};
