#include "BenchConnection.h"

#include <QList>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

BenchConnection::~BenchConnection()
{
    close();
}

int BenchConnection::request(const QByteArray& method, const QByteArray& target, const QByteArray& body, QByteArray* answer)
{
    // A connection the server closed in the meantime is opened again once.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_fd < 0 && !connectToHost())
            return 0;
        QByteArray head = method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
        if (!body.isEmpty())
            head += "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
        const QByteArray message = head + "\r\n" + body;
        qint64 sent = 0;
        while (sent < message.size()) {
            const ssize_t n = ::send(m_fd, message.constData() + sent, size_t(message.size() - sent), MSG_NOSIGNAL);
            if (n <= 0)
                break;
            sent += n;
        }
        int headEnd = -1;
        while (sent == message.size() && (headEnd = m_buffer.indexOf("\r\n\r\n")) < 0) {
            if (!fill(m_buffer.size() + 1))
                break;
        }
        if (headEnd < 0) {
            close();
            continue;
        }
        const QByteArray headers = m_buffer.left(headEnd);
        const int status = headers.mid(9, 3).toInt();
        int length = 0;
        for (const QByteArray& line : headers.split('\n')) {
            if (line.toLower().startsWith("content-length:"))
                length = line.mid(15).trimmed().toInt();
        }
        if (!fill(headEnd + 4 + length)) {
            close();
            return 0;
        }
        *answer = m_buffer.mid(headEnd + 4, length);
        m_buffer.remove(0, headEnd + 4 + length);
        return status;
    }
    return 0;
}

bool BenchConnection::connectToHost()
{
    m_fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (m_fd < 0)
        return false;
    const int one = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(m_port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close();
        return false;
    }
    return true;
}

void BenchConnection::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_buffer.clear();
}

bool BenchConnection::fill(int n)
{
    char chunk[65536];
    while (m_buffer.size() < n) {
        const ssize_t got = ::recv(m_fd, chunk, sizeof chunk, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        m_buffer.append(chunk, int(got));
    }
    return true;
}
