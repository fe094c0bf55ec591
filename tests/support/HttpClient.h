#pragma once

#include "HttpReply.h"
#include "HttpSocket.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <memory>

// A small blocking HTTP/1.1 client for the host's API, one connection per
// request ("Connection: close").
class HttpClient
{
public:
    explicit HttpClient(quint16 port, const QString& address = QStringLiteral("127.0.0.1"));

    HttpReply get(const QString& target, int timeoutMs = 15000) const;
    HttpReply post(const QString& target, const QByteArray& body, int timeoutMs = 15000) const;
    HttpReply patch(const QString& target, const QByteArray& body, int timeoutMs = 15000) const;
    HttpReply del(const QString& target, int timeoutMs = 15000) const;
    HttpReply request(const QByteArray& method, const QString& target, const QByteArray& body,
                      int timeoutMs = 15000) const;

    // Sends a request and returns its open connection without waiting for
    // the answer (null when it could not be sent); HttpReply::read finishes it.
    std::unique_ptr<HttpSocket> send(const QByteArray& method, const QString& target, const QByteArray& body) const;
    // Sends bytes as they are, for requests no well-behaved client makes.
    HttpReply raw(const QByteArray& bytes, int timeoutMs = 15000) const;

    // "name=value&..." with names and values percent-encoded.
    static QString query(const QList<QPair<QString, QString>>& arguments);
    // JSON text of a value.
    static QByteArray json(const QVariant& value);

    quint16 port() const { return m_port; }

private:
    quint16 m_port;
    QString m_address;
};
