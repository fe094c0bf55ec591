#include "HttpReply.h"

#include <VexaJson.h>

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
    const QList<QByteArray> statusLine = lines.value(0).trimmed().split(' ');
    reply->status = statusLine.value(1).toInt();
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
        if (lineEnd < 0)
            return false;
        bool ok = false;
        const int size = raw->left(lineEnd).split(';').value(0).trimmed().toInt(&ok, 16);
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
