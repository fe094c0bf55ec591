#include "HttpClient.h"

#include <VexaJson.h>

#include <QUrl>

HttpClient::HttpClient(quint16 port, const QString& address) : m_port(port), m_address(address) {}

HttpReply HttpClient::get(const QString& target, int timeoutMs) const
{
    return request("GET", target, QByteArray(), timeoutMs);
}

HttpReply HttpClient::post(const QString& target, const QByteArray& body, int timeoutMs) const
{
    return request("POST", target, body, timeoutMs);
}

HttpReply HttpClient::patch(const QString& target, const QByteArray& body, int timeoutMs) const
{
    return request("PATCH", target, body, timeoutMs);
}

HttpReply HttpClient::del(const QString& target, int timeoutMs) const
{
    return request("DELETE", target, QByteArray(), timeoutMs);
}

HttpReply HttpClient::request(const QByteArray& method, const QString& target, const QByteArray& body,
                              int timeoutMs) const
{
    const std::unique_ptr<HttpSocket> socket = send(method, target, body);
    if (!socket)
        return HttpReply();
    return HttpReply::read(*socket, QDeadlineTimer(timeoutMs));
}

std::unique_ptr<HttpSocket> HttpClient::send(const QByteArray& method, const QString& target,
                                             const QByteArray& body) const
{
    QByteArray head = method + ' ' + target.toUtf8() + " HTTP/1.1\r\nHost: " + m_address.toLatin1() + ':'
        + QByteArray::number(m_port) + "\r\nConnection: close\r\n";
    if (!body.isEmpty() || method == "POST" || method == "PATCH")
        head += "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
    head += "\r\n";
    auto socket = std::make_unique<HttpSocket>();
    if (!socket->connectTo(m_address, m_port) || !socket->sendAll(head + body))
        return nullptr;
    return socket;
}

HttpReply HttpClient::raw(const QByteArray& bytes, int timeoutMs) const
{
    HttpSocket socket;
    if (!socket.connectTo(m_address, m_port) || !socket.sendAll(bytes))
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
