#pragma once

#include "HttpClient.h"

#include <QByteArray>

// One kept-alive HTTP/1.1 connection to the host on the loopback, as a
// client that pages through lists would hold it. Blocking; one thread each.
class BenchConnection
{
public:
    // From the loopback address from when it is given.
    explicit BenchConnection(quint16 port, const QString& from = QString()) : m_port(port), m_from(from) {}

    BenchConnection(const BenchConnection&) = delete;
    BenchConnection& operator=(const BenchConnection&) = delete;

    // Sends one request and reads its whole answer; the HTTP status, or 0
    // when the exchange failed.
    int request(const QByteArray& method, const QByteArray& target, const QByteArray& body, QByteArray* answer);

    // The same in two steps, for a request whose making is not to be timed.
    static QByteArray message(const QByteArray& method, const QByteArray& target, const QByteArray& body);
    int send(const QByteArray& message, QByteArray* answer);

private:
    quint16 m_port;
    QString m_from;
    HttpSocket m_socket;
    bool m_open = false;
};
