#include "HttpSocket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

HttpSocket::~HttpSocket()
{
    close();
}

bool HttpSocket::connectTo(const QString& address, quint16 port)
{
    close();
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(port);
    if (inet_pton(AF_INET, address.toLatin1().constData(), &addr.sin_addr) != 1)
        return false;
    m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_fd < 0)
        return false;
    const int one = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));
    if (::connect(m_fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0) {
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
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        sent += n;
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
