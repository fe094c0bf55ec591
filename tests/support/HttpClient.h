#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

#include <memory>

// A blocking TCP connection to a loopback server: every read waits at most
// until a deadline.
class HttpSocket
{
public:
    HttpSocket() = default;
    ~HttpSocket() { close(); }
    HttpSocket(const HttpSocket&) = delete;
    HttpSocket& operator=(const HttpSocket&) = delete;

    // From the loopback address from when given: each address of 127/8 is a
    // client of its own to the host.
    bool connectTo(const QString& address, quint16 port, const QString& from = QString());
    bool sendAll(const QByteArray& data);
    // Appends what arrives to *out; false when the peer closed or the deadline passed.
    bool readSome(QByteArray* out, const QDeadlineTimer& deadline);
    bool peerClosed() const { return m_peerClosed; }
    void close();

private:
    int m_fd = -1;
    bool m_peerClosed = false;
};

// One HTTP response as a test sees it. status 0: no (complete) response came.
class HttpReply
{
public:
    int status = 0;
    // Header names in lower case.
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;

    // The body parsed as JSON; invalid when it is not JSON.
    QVariant json() const;
    // The "error" object's name and message, for error answers.
    QString errorName() const;
    QString errorMessage() const;

    // Reads the status line and headers from socket into reply (raw keeps
    // the bytes that follow them); false when they did not all come.
    static bool readHead(HttpSocket& socket, const QDeadlineTimer& deadline, HttpReply* reply, QByteArray* raw);
    // Reads a whole response: body by Content-Length, chunked, or to the end.
    static HttpReply read(HttpSocket& socket, const QDeadlineTimer& deadline);
    // Decodes the complete chunks at the start of raw into *body and removes
    // them; true once the last chunk was seen.
    static bool takeChunks(QByteArray* raw, QByteArray* body);
};

// A small blocking HTTP/1.1 client for the host's API, one connection per
// request ("Connection: close").
class HttpClient
{
public:
    // Connections come from the loopback address from when it is given.
    explicit HttpClient(quint16 port, const QString& from = QString()) : m_port(port), m_from(from) {}

    HttpReply get(const QString& target, int timeoutMs = 15000) const { return request("GET", target, {}, timeoutMs); }
    HttpReply post(const QString& target, const QByteArray& body, int timeoutMs = 15000) const
    {
        return request("POST", target, body, timeoutMs);
    }
    HttpReply request(const QByteArray& method, const QString& target, const QByteArray& body,
                      int timeoutMs = 15000) const;
    // Sends a request and returns its open connection without waiting for
    // the answer (null when it could not be sent); HttpReply::read finishes it.
    std::unique_ptr<HttpSocket> send(const QByteArray& method, const QString& target, const QByteArray& body) const;
    // Sends bytes as they are, for requests no well-behaved client makes.
    HttpReply raw(const QByteArray& bytes, int timeoutMs) const;

    // "name=value&..." with names and values percent-encoded.
    static QString query(const QList<QPair<QString, QString>>& arguments);
    // JSON text of a value.
    static QByteArray json(const QVariant& value);

private:
    quint16 m_port;
    QString m_from;
};
