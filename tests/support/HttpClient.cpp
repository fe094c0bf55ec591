#include "HttpClient.h"

#include <VexaJson.h>

#include <QUrl>

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

bool HttpSocket::connectTo(const QString& address, quint16 port, const QString& from)
{
    close();
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(port);
    if (inet_pton(AF_INET, address.toLatin1().constData(), &addr.sin_addr) != 1)
        return false;
    m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int one = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    sockaddr_in source{};
    source.sin_family = AF_INET;
    if (!from.isEmpty()
        && (inet_pton(AF_INET, from.toLatin1().constData(), &source.sin_addr) != 1
            || ::bind(m_fd, reinterpret_cast<sockaddr*>(&source), sizeof(source)) != 0)) {
        close();
        return false;
    }
    if (m_fd < 0 || ::connect(m_fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0) {
        close();
        return false;
    }
    m_peerClosed = false;
    return true;
}

bool HttpSocket::sendAll(const QByteArray& data)
{
    qint64 sent = 0;
    while (m_fd >= 0 && sent < data.size()) {
        const ssize_t n = ::send(m_fd, data.constData() + sent, size_t(data.size() - sent), MSG_NOSIGNAL);
        if (n < 0 && errno != EINTR)
            return false;
        sent += qMax<ssize_t>(n, 0);
    }
    return m_fd >= 0;
}

bool HttpSocket::readSome(QByteArray* out, const QDeadlineTimer& deadline)
{
    while (m_fd >= 0) {
        pollfd pfd{m_fd, POLLIN, 0};
        const int wait = int(qMin<qint64>(deadline.remainingTime(), 1000000));
        const int ready = ::poll(&pfd, 1, deadline.isForever() ? -1 : qMax(0, wait));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return false;
        char buf[16384];
        const ssize_t n = ::recv(m_fd, buf, sizeof(buf), 0);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            m_peerClosed = true;
            return false;
        }
        out->append(buf, int(n));
        return true;
    }
    return false;
}

void HttpSocket::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

QVariant HttpReply::json() const
{
    QString error;
    return VexaJson::parse(body, &error);
}

QString HttpReply::errorName() const
{
    return json().toHash().value(QStringLiteral("error")).toHash().value(QStringLiteral("name")).toString();
}

QString HttpReply::errorMessage() const
{
    return json().toHash().value(QStringLiteral("error")).toHash().value(QStringLiteral("message")).toString();
}

bool HttpReply::readHead(HttpSocket& socket, const QDeadlineTimer& deadline, HttpReply* reply, QByteArray* raw)
{
    int end;
    while ((end = raw->indexOf("\r\n\r\n")) < 0) {
        if (!socket.readSome(raw, deadline))
            return false;
    }
    const QList<QByteArray> lines = raw->left(end).split('\n');
    raw->remove(0, end + 4);
    reply->status = lines.value(0).trimmed().split(' ').value(1).toInt();
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines.at(i).indexOf(':');
        if (colon > 0)
            reply->headers.insert(lines.at(i).left(colon).trimmed().toLower(), lines.at(i).mid(colon + 1).trimmed());
    }
    return reply->status > 0;
}

bool HttpReply::takeChunks(QByteArray* raw, QByteArray* body)
{
    for (;;) {
        const int lineEnd = raw->indexOf("\r\n");
        bool ok = false;
        const int size = lineEnd < 0 ? 0 : raw->left(lineEnd).split(';').value(0).trimmed().toInt(&ok, 16);
        if (!ok)
            return false;
        if (size == 0) {
            // The last chunk; trailers are not used here.
            raw->clear();
            return true;
        }
        if (raw->size() < lineEnd + 2 + size + 2)
            return false;
        body->append(raw->mid(lineEnd + 2, size));
        raw->remove(0, lineEnd + 2 + size + 2);
    }
}

HttpReply HttpReply::read(HttpSocket& socket, const QDeadlineTimer& deadline)
{
    HttpReply reply;
    QByteArray raw;
    if (!readHead(socket, deadline, &reply, &raw))
        return HttpReply();
    if (reply.headers.value("transfer-encoding").toLower().contains("chunked")) {
        while (!takeChunks(&raw, &reply.body)) {
            if (!socket.readSome(&raw, deadline))
                return HttpReply();
        }
    } else if (reply.headers.contains("content-length")) {
        const int length = reply.headers.value("content-length").toInt();
        while (raw.size() < length) {
            if (!socket.readSome(&raw, deadline))
                return HttpReply();
        }
        reply.body = raw.left(length);
    } else {
        while (socket.readSome(&raw, deadline)) {
        }
        if (!socket.peerClosed())
            return HttpReply();
        reply.body = raw;
    }
    return reply;
}

HttpReply HttpClient::request(const QByteArray& method, const QString& target, const QByteArray& body,
                              int timeoutMs) const
{
    const std::unique_ptr<HttpSocket> socket = send(method, target, body);
    return socket ? HttpReply::read(*socket, QDeadlineTimer(timeoutMs)) : HttpReply();
}

std::unique_ptr<HttpSocket> HttpClient::send(const QByteArray& method, const QString& target,
                                             const QByteArray& body) const
{
    QByteArray head = method + ' ' + target.toUtf8() + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(m_port)
        + "\r\nConnection: close\r\n";
    if (!body.isEmpty() || method == "POST" || method == "PATCH")
        head += "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
    auto socket = std::make_unique<HttpSocket>();
    if (!socket->connectTo(QStringLiteral("127.0.0.1"), m_port, m_from) || !socket->sendAll(head + "\r\n" + body))
        return nullptr;
    return socket;
}

HttpReply HttpClient::raw(const QByteArray& bytes, int timeoutMs) const
{
    HttpSocket socket;
    if (!socket.connectTo(QStringLiteral("127.0.0.1"), m_port, m_from) || !socket.sendAll(bytes))
        return HttpReply();
    return HttpReply::read(socket, QDeadlineTimer(timeoutMs));
}

QString HttpClient::query(const QList<QPair<QString, QString>>& arguments)
{
    QStringList parts;
    for (const auto& argument : arguments)
        parts.append(QString::fromLatin1(QUrl::toPercentEncoding(argument.first) + '='
                                         + QUrl::toPercentEncoding(argument.second)));
    return parts.join(QLatin1Char('&'));
}

QByteArray HttpClient::json(const QVariant& value)
{
    return VexaJson::toJson(value);
}
