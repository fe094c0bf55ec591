#include "HttpServer.h"

#include "ApiRequest.h"
#include "ApiResponse.h"
#include "ApiRouter.h"
#include "HttpExchange.h"
#include "ListenerHandover.h"
#include "SubscriptionApi.h"
#include "SubscriptionEvent.h"
#include "SubscriptionHub.h"
#include "TimerThread.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <QElapsedTimer>
#include <QThread>

#include <arpa/inet.h>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("HttpServer"));
}

// How often subscriptions are checked for idleness.
constexpr int kIdleSweepMs = 5000;
// How long a stop waits for connections that have not sent a request yet.
constexpr int kRequestGraceMs = 250;

// What a stream's content reader needs: the server and the exchange, kept
// alive until the library frees the response.
struct StreamContext
{
    HttpServer* server;
    std::shared_ptr<HttpExchange> exchange;
};

MHD_Result collectArgument(void* cls, MHD_ValueKind, const char* key, size_t keySize, const char* value,
                           size_t valueSize)
{
    auto* query = static_cast<QList<ApiRequest::Argument>*>(cls);
    // Sizes, not C strings: a NUL byte inside a value must reach the checks.
    query->append(ApiRequest::Argument(QString::fromUtf8(key, int(keySize)),
                                       value ? QString::fromUtf8(value, int(valueSize)) : QString()));
    return MHD_YES;
}

MHD_Result collectHeader(void* cls, MHD_ValueKind, const char* key, size_t keySize, const char* value, size_t valueSize)
{
    auto* headers = static_cast<QList<ApiRequest::Header>*>(cls);
    headers->append(ApiRequest::Header(QByteArray(key, int(keySize)), value ? QByteArray(value, int(valueSize)) : QByteArray()));
    return MHD_YES;
}

QString clientAddress(MHD_Connection* connection)
{
    const MHD_ConnectionInfo* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    if (!info || !info->client_addr)
        return QString();
    char text[INET6_ADDRSTRLEN] = {};
    const sockaddr* address = info->client_addr;
    if (address->sa_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr, text, sizeof(text));
    else if (address->sa_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr, text, sizeof(text));
    return QString::fromLatin1(text);
}

} // namespace

HttpServer::HttpServer(CMRootWorker* root, int replyTimeoutMs, int maxBodyBytes)
    : m_root(root),
      m_replyTimeoutMs(replyTimeoutMs),
      m_maxBodyBytes(maxBodyBytes),
      m_timers(new TimerThread),
      m_hub(new SubscriptionHub(root)),
      m_router(new ApiRouter(root, m_hub.get()))
{
}

HttpServer::~HttpServer()
{
    stop();
    // The timer's callbacks reach the hub: end them first.
    m_timers.reset();
}

bool HttpServer::start(const QString& address, quint16 port, QString* error)
{
    if (m_daemon) {
        *error = QStringLiteral("the server is already running");
        return false;
    }
    sockaddr_storage storage;
    std::memset(&storage, 0, sizeof(storage));
    // epoll, so that a quiesced listening socket is out of every thread's
    // set at once and may be closed before the daemon stops.
    unsigned int flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_USE_ITC | MHD_ALLOW_SUSPEND_RESUME | MHD_USE_ERROR_LOG;
    const QByteArray host = address.toLatin1();
    auto* v4 = reinterpret_cast<sockaddr_in*>(&storage);
    auto* v6 = reinterpret_cast<sockaddr_in6*>(&storage);
    if (inet_pton(AF_INET, host.constData(), &v4->sin_addr) == 1) {
        v4->sin_family = AF_INET;
        v4->sin_port = htons(port);
    } else if (inet_pton(AF_INET6, host.constData(), &v6->sin6_addr) == 1) {
        v6->sin6_family = AF_INET6;
        v6->sin6_port = htons(port);
        flags |= MHD_USE_IPv6;
    } else {
        *error = QStringLiteral("not an IP address: ") + address;
        return false;
    }

    m_stopping = false;
    m_forceAnswer = false;
    errno = 0;
    m_daemon = MHD_start_daemon(flags, port, nullptr, nullptr, &HttpServer::onAccess, this,
                                MHD_OPTION_EXTERNAL_LOGGER, &HttpServer::onLog, this,
                                MHD_OPTION_SOCK_ADDR, reinterpret_cast<sockaddr*>(&storage),
                                MHD_OPTION_THREAD_POOL_SIZE, static_cast<unsigned int>(PoolThreads),
                                MHD_OPTION_URI_LOG_CALLBACK, &HttpServer::onRequestLine, this,
                                MHD_OPTION_NOTIFY_COMPLETED, &HttpServer::onCompleted, this,
                                MHD_OPTION_CONNECTION_TIMEOUT, static_cast<unsigned int>(60),
                                MHD_OPTION_CONNECTION_LIMIT, MaxConnections,
                                MHD_OPTION_PER_IP_CONNECTION_LIMIT, MaxConnectionsPerAddress,
                                MHD_OPTION_CONNECTION_MEMORY_LIMIT, MemoryPerConnection,
                                MHD_OPTION_END);
    if (!m_daemon) {
        *error = QStringLiteral("cannot listen on %1 port %2: %3")
                     .arg(address)
                     .arg(port)
                     .arg(QString::fromLocal8Bit(std::strerror(errno ? errno : EADDRNOTAVAIL)));
        return false;
    }
    const MHD_DaemonInfo* info = MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_BIND_PORT);
    m_port = info ? info->port : port;
    scheduleIdleSweep();
    LOG4CPLUS_INFO(logger(), "HTTP API listening on " << address.toStdString() << " port " << m_port);
    return true;
}

void HttpServer::stop()
{
    if (!m_daemon)
        return;
    m_stopping = true;
    const int listenSocket = MHD_quiesce_daemon(m_daemon);
    if (listenSocket >= 0) {
        const int handed = ListenerHandover::close(listenSocket, m_daemon);
        LOG4CPLUS_INFO(logger(), "Stopped accepting; " << handed << " waiting connections are still served");
    }
    // Long polls answer with what they have, streams end.
    m_hub->wakeAll();
    // A connection accepted a moment ago may not have sent its request yet:
    // it gets a little time to, so that it is answered and not cut off.
    QElapsedTimer grace;
    grace.start();
    while (grace.elapsed() < kRequestGraceMs && openConnections() > exchangeCount())
        QThread::msleep(10);
    if (!waitForExchanges(m_replyTimeoutMs + 1000)) {
        // What is still waiting answers now, whatever it waits for: the
        // library must not be stopped with a connection suspended.
        m_forceAnswer = true;
        {
            QMutexLocker lock(&m_exchangesMutex);
            for (HttpExchange* exchange : qAsConst(m_exchanges))
                exchange->wake();
        }
        waitForExchanges(2000);
    }
    MHD_stop_daemon(m_daemon);
    m_daemon = nullptr;
    LOG4CPLUS_INFO(logger(), "HTTP API stopped");
}

void* HttpServer::onRequestLine(void* cls, const char* target, MHD_Connection* connection)
{
    // The exchange starts here, where the whole target is still in one piece
    // and its length can be told.
    auto* server = static_cast<HttpServer*>(cls);
    auto exchange = std::make_shared<HttpExchange>(connection, int(qMin<size_t>(std::strlen(target), INT_MAX)),
                                                   server->m_maxBodyBytes);
    QMutexLocker lock(&server->m_exchangesMutex);
    server->m_exchanges.insert(exchange.get());
    return new ExchangePtr(exchange);
}

MHD_Result HttpServer::onAccess(void* cls, MHD_Connection*, const char* url, const char* method,
                                const char*, const char* uploadData, size_t* uploadDataSize, void** conCls)
{
    auto* server = static_cast<HttpServer*>(cls);
    // onRequestLine gave every request its exchange; without one, drop the connection.
    if (!*conCls)
        return MHD_NO;
    const ExchangePtr exchange = *static_cast<ExchangePtr*>(*conCls);
    if (exchange->method().isEmpty()) {
        // The headers are in; the body, if any, follows in the next calls.
        exchange->setRequest(QByteArray(method), QByteArray(url));
        return MHD_YES;
    }
    if (*uploadDataSize) {
        exchange->appendBody(uploadData, *uploadDataSize);
        *uploadDataSize = 0;
        return MHD_YES;
    }
    switch (exchange->stage()) {
    case HttpExchange::Stage::Receiving:
        return server->begin(exchange);
    case HttpExchange::Stage::Awaiting:
        return server->continueAwait(exchange);
    case HttpExchange::Stage::Polling:
        return server->continuePoll(exchange);
    case HttpExchange::Stage::Streaming:
    case HttpExchange::Stage::Answered:
        break;
    }
    return MHD_YES;
}

void HttpServer::onCompleted(void* cls, MHD_Connection*, void** conCls, MHD_RequestTerminationCode)
{
    auto* holder = static_cast<ExchangePtr*>(*conCls);
    if (!holder)
        return;
    static_cast<HttpServer*>(cls)->completed(*holder);
    delete holder;
    *conCls = nullptr;
}

ssize_t HttpServer::onStreamRead(void* cls, uint64_t, char* buf, size_t max)
{
    auto* context = static_cast<StreamContext*>(cls);
    return context->server->readStream(context->exchange, buf, max);
}

void HttpServer::onStreamFree(void* cls)
{
    delete static_cast<StreamContext*>(cls);
}

void HttpServer::onLog(void*, const char* format, va_list args)
{
    char text[512];
    std::vsnprintf(text, sizeof(text), format, args);
    LOG4CPLUS_WARN(logger(), "libmicrohttpd: " << text);
}

MHD_Result HttpServer::begin(const ExchangePtr& exchange)
{
    if (exchange->targetBytes() > MaxTargetBytes)
        return respond(exchange, ApiResponse::error(414, ApiResponse::UriTooLongName(), QStringLiteral("URI too long"),
                                                    QStringLiteral("Request targets are limited to %1 bytes")
                                                        .arg(MaxTargetBytes)));
    if (exchange->bodyTooLarge())
        return respond(exchange, ApiResponse::error(413, ApiResponse::PayloadTooLargeName(),
                                                    QStringLiteral("Payload too large"),
                                                    QStringLiteral("Request bodies are limited to %1 bytes")
                                                        .arg(m_maxBodyBytes)));
    QList<ApiRequest::Argument> query;
    MHD_get_connection_values_n(exchange->connection(), MHD_GET_ARGUMENT_KIND, &collectArgument, &query);
    QList<ApiRequest::Header> headers;
    MHD_get_connection_values_n(exchange->connection(), MHD_HEADER_KIND, &collectHeader, &headers);
    const ApiRequest request(exchange->method(), QString::fromUtf8(exchange->url()), query, exchange->body(), headers,
                             clientAddress(exchange->connection()));

    ApiResult result;
    try {
        result = m_router->dispatch(request);
    } catch (const std::exception& e) {
        LOG4CPLUS_ERROR(logger(), "Request " << exchange->url().constData() << " failed: " << e.what());
        return respond(exchange, ApiResponse::error(500, ApiResponse::InternalErrorName(),
                                                    QStringLiteral("Internal error"), QString::fromUtf8(e.what())));
    }
    exchange->setResult(result);
    switch (result.kind()) {
    case ApiResult::Kind::Ready:
        return respond(exchange, result.response());
    case ApiResult::Kind::Await:
        return beginAwait(exchange);
    case ApiResult::Kind::LongPoll:
    case ApiResult::Kind::Stream:
        break;
    }

    const std::weak_ptr<HttpExchange> weak = exchange;
    const quint64 token = m_hub->addWaiter(result.subscription(), [weak]() {
        const auto e = weak.lock();
        if (e && e->gathering() != HttpExchange::Gathering::Running)
            e->wake();
    });
    if (!token)
        return respond(exchange, SubscriptionApi::unknownSubscription(result.subscription()));
    exchange->setWaiterToken(token);
    if (result.kind() == ApiResult::Kind::Stream)
        return beginStream(exchange);

    exchange->setStage(HttpExchange::Stage::Polling);
    if (result.timeoutMs() > 0) {
        exchange->setTimerId(m_timers->schedule(result.timeoutMs(), [weak]() {
            if (const auto e = weak.lock()) {
                e->setTimedOut();
                e->wake();
            }
        }));
    } else {
        exchange->setTimedOut();
    }
    return continuePoll(exchange);
}

MHD_Result HttpServer::beginAwait(const ExchangePtr& exchange)
{
    exchange->setStage(HttpExchange::Stage::Awaiting);
    exchange->clearWake();
    const std::weak_ptr<HttpExchange> weak = exchange;
    exchange->result().reply().onFinished([weak]() {
        if (const auto e = weak.lock())
            e->wake();
    });
    if (exchange->result().reply().isFinished())
        return respond(exchange, exchange->result().complete());
    exchange->setTimerId(m_timers->schedule(m_replyTimeoutMs, [weak]() {
        if (const auto e = weak.lock()) {
            e->setTimedOut();
            e->wake();
        }
    }));
    if (exchange->suspendUnlessWoken())
        return MHD_YES;
    return continueAwait(exchange);
}

MHD_Result HttpServer::continueAwait(const ExchangePtr& exchange)
{
    for (;;) {
        exchange->clearWake();
        if (exchange->result().reply().isFinished())
            return respond(exchange, exchange->result().complete());
        if (exchange->timedOut() || m_forceAnswer)
            return respond(exchange, timeoutResponse(exchange));
        if (exchange->suspendUnlessWoken())
            return MHD_YES;
    }
}

ApiResponse HttpServer::timeoutResponse(const ExchangePtr& exchange) const
{
    const CMError timeout(CMError::TimeoutName(), QStringLiteral("Timeout"),
                          TrString(QStringLiteral("The reply did not come within %1 ms").arg(m_replyTimeoutMs)));
    // A command still queued in its module is withdrawn; one already started
    // cannot be stopped, and the client must know it may still happen.
    if (exchange->result().reply().cancel(timeout)) {
        LOG4CPLUS_INFO(logger(), exchange->method().constData() << " " << exchange->url().constData()
                                                               << ": withdrawn before it started");
        return ApiResponse::error(504, CMError::TimeoutName(), QStringLiteral("Timeout"),
                                  QStringLiteral("The command did not start within %1 ms and was withdrawn: it will not "
                                                 "be carried out, and sending it again is safe")
                                      .arg(m_replyTimeoutMs));
    }
    if (exchange->method() == "POST")
        return ApiResponse::error(
            504, CMError::TimeoutName(), QStringLiteral("Timeout"),
            QStringLiteral("The command did not finish within %1 ms and may still be carried out. To retry safely, "
                           "send commands with an Idempotency-Key header and repeat one with the same key: the "
                           "retry answers the first one's outcome, waiting for it if need be, instead of running "
                           "the command again")
                .arg(m_replyTimeoutMs));
    return ApiResponse::fromError(timeout);
}

MHD_Result HttpServer::continuePoll(const ExchangePtr& exchange)
{
    const QString& id = exchange->result().subscription();
    for (;;) {
        exchange->clearWake();
        QList<QByteArray> events;
        if (!m_hub->takeEvents(id, &events))
            return respond(exchange, SubscriptionApi::unknownSubscription(id));
        QList<QByteArray>& held = exchange->heldEvents();
        held += events;
        const bool answer = exchange->timedOut() || m_stopping;
        if (!held.isEmpty() && exchange->pollWaited() && !answer
            && exchange->gathering() != HttpExchange::Gathering::Over) {
            // Events came while the poll waited. A command's changes come as
            // a few events in a row, and commands follow each other: a
            // moment more answers them together instead of waking the client
            // for each, which under many subscribers costs more than the work.
            if (exchange->gathering() == HttpExchange::Gathering::NotYet) {
                exchange->setGathering(HttpExchange::Gathering::Running);
                const std::weak_ptr<HttpExchange> weak = exchange;
                m_timers->schedule(GatherEventsMs, [weak]() {
                    if (const auto e = weak.lock()) {
                        e->setGathering(HttpExchange::Gathering::Over);
                        e->wake();
                    }
                });
            }
            if (exchange->suspendUnlessWoken())
                return MHD_YES;
            continue;
        }
        if (!held.isEmpty() || answer)
            return respond(exchange, ApiResponse(200, SubscriptionEvent::list(held)));
        exchange->setPollWaited();
        if (exchange->suspendUnlessWoken())
            return MHD_YES;
    }
}

MHD_Result HttpServer::beginStream(const ExchangePtr& exchange)
{
    exchange->setStage(HttpExchange::Stage::Streaming);
    // An opening comment puts the headers on the wire at once, so the client
    // knows the stream is open.
    exchange->pendingStream() = ": subscription " + exchange->result().subscription().toLatin1() + "\n\n";
    auto* context = new StreamContext{this, exchange};
    MHD_Response* response =
        MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, 4096, &HttpServer::onStreamRead, context,
                                          &HttpServer::onStreamFree);
    if (!response) {
        delete context;
        return MHD_NO;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, "text/event-stream");
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-cache");
    scheduleKeepAlive(exchange);
    const MHD_Result queued = MHD_queue_response(exchange->connection(), 200, response);
    MHD_destroy_response(response);
    LOG4CPLUS_DEBUG(logger(), "GET " << exchange->url().constData() << " -> stream");
    return queued;
}

ssize_t HttpServer::readStream(const ExchangePtr& exchange, char* buf, size_t max)
{
    QByteArray& pending = exchange->pendingStream();
    for (;;) {
        if (!pending.isEmpty()) {
            const int n = int(qMin<size_t>(max, size_t(pending.size())));
            std::memcpy(buf, pending.constData(), size_t(n));
            pending.remove(0, n);
            return n;
        }
        if (m_stopping || exchange->isClosed())
            return MHD_CONTENT_READER_END_OF_STREAM;
        exchange->clearWake();
        QList<QByteArray> events;
        if (!m_hub->takeEvents(exchange->result().subscription(), &events))
            return MHD_CONTENT_READER_END_OF_STREAM;
        for (const QByteArray& event : qAsConst(events))
            pending += "data: " + event + "\n\n";
        if (pending.isEmpty() && exchange->takeKeepAliveDue())
            pending = ": keep-alive\n\n";
        if (!pending.isEmpty())
            continue;
        // Nothing to send: give the thread back until an event or the
        // keep-alive timer wakes the stream.
        if (exchange->suspendUnlessWoken())
            return 0;
    }
}

MHD_Result HttpServer::respond(const ExchangePtr& exchange, const ApiResponse& answer)
{
    release(exchange);
    exchange->setStage(HttpExchange::Stage::Answered);
    // The answer's own buffer is sent, not a copy: MHD lets go of it when done.
    auto* body = new QByteArray(answer.body());
    MHD_Response* response = MHD_create_response_from_buffer_with_free_callback_cls(
        size_t(body->size()), const_cast<char*>(body->constData()), [](void* cls) { delete static_cast<QByteArray*>(cls); },
        body);
    if (!response) {
        delete body;
        return MHD_NO;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.contentType().constData());
    for (const ApiResponse::Header& header : answer.headers())
        MHD_add_response_header(response, header.first.constData(), header.second.constData());
    const MHD_Result queued = MHD_queue_response(exchange->connection(), unsigned(answer.status()), response);
    MHD_destroy_response(response);
    if (answer.status() >= 500)
        LOG4CPLUS_WARN(logger(), exchange->method().constData() << " " << exchange->url().constData() << " -> "
                                                               << answer.status() << " " << answer.body().constData());
    else
        LOG4CPLUS_DEBUG(logger(), exchange->method().constData() << " " << exchange->url().constData() << " -> "
                                                                << answer.status());
    return queued;
}

void HttpServer::release(const ExchangePtr& exchange)
{
    if (exchange->waiterToken()) {
        m_hub->removeWaiter(exchange->result().subscription(), exchange->waiterToken());
        exchange->setWaiterToken(0);
    }
    if (exchange->timerId()) {
        m_timers->cancel(exchange->timerId());
        exchange->setTimerId(0);
    }
}

void HttpServer::completed(const ExchangePtr& exchange)
{
    exchange->close();
    release(exchange);
    QMutexLocker lock(&m_exchangesMutex);
    m_exchanges.remove(exchange.get());
    if (m_exchanges.isEmpty())
        m_exchangesDone.wakeAll();
}

void HttpServer::scheduleKeepAlive(const std::weak_ptr<HttpExchange>& weak)
{
    const auto exchange = weak.lock();
    if (!exchange || exchange->isClosed())
        return;
    exchange->setTimerId(m_timers->schedule(KeepAliveMs, [this, weak]() {
        if (const auto e = weak.lock()) {
            if (e->isClosed())
                return;
            e->setKeepAliveDue();
            e->wake();
            scheduleKeepAlive(weak);
        }
    }));
}

void HttpServer::scheduleIdleSweep()
{
    m_timers->schedule(kIdleSweepMs, [this]() {
        if (m_stopping)
            return;
        const int dropped = m_hub->dropIdle(SubscriptionHub::Clock::now());
        if (dropped)
            LOG4CPLUS_DEBUG(logger(), "Dropped " << dropped << " idle subscriptions");
        scheduleIdleSweep();
    });
}

int HttpServer::openConnections() const
{
    const MHD_DaemonInfo* info = MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_CURRENT_CONNECTIONS);
    return info ? int(info->num_connections) : 0;
}

int HttpServer::exchangeCount()
{
    QMutexLocker lock(&m_exchangesMutex);
    return m_exchanges.size();
}

bool HttpServer::waitForExchanges(int msecs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    QMutexLocker lock(&m_exchangesMutex);
    while (!m_exchanges.isEmpty()) {
        const qint64 left = msecs - elapsed.elapsed();
        if (left <= 0)
            return false;
        m_exchangesDone.wait(&m_exchangesMutex, QDeadlineTimer(left));
    }
    return true;
}
