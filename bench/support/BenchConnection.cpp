#include "BenchConnection.h"

int BenchConnection::request(const QByteArray& method, const QByteArray& target, const QByteArray& body, QByteArray* answer)
{
    return send(message(method, target, body), answer);
}

QByteArray BenchConnection::message(const QByteArray& method, const QByteArray& target, const QByteArray& body)
{
    QByteArray message = method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
    if (!body.isEmpty())
        message += "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
    message.reserve(message.size() + 2 + body.size());
    message += "\r\n";
    message += body;
    return message;
}

int BenchConnection::send(const QByteArray& message, QByteArray* answer)
{
    // A connection the server closed in the meantime is opened again once.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!m_open && !(m_open = m_socket.connectTo(QStringLiteral("127.0.0.1"), m_port, m_from)))
            return 0;
        HttpReply reply;
        if (m_socket.sendAll(message))
            reply = HttpReply::read(m_socket, QDeadlineTimer(QDeadlineTimer::Forever));
        if (reply.status > 0) {
            *answer = reply.body;
            return reply.status;
        }
        m_socket.close();
        m_open = false;
    }
    return 0;
}
