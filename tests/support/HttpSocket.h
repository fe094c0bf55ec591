#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

// A blocking TCP connection to a loopback server, for tests: every read
// waits at most until a deadline.
class HttpSocket
{
public:
    HttpSocket() = default;
    ~HttpSocket();

    HttpSocket(const HttpSocket&) = delete;
    HttpSocket& operator=(const HttpSocket&) = delete;

    bool connectTo(const QString& address, quint16 port);
    bool isOpen() const { return m_fd >= 0; }
    bool sendAll(const QByteArray& data);
    // Appends what arrives to *out; false when the peer closed or the deadline passed.
    bool readSome(QByteArray* out, const QDeadlineTimer& deadline);
    bool peerClosed() const { return m_peerClosed; }
    void close();

private:
    int m_fd = -1;
    bool m_peerClosed = false;
};
