#pragma once

#include "HttpSocket.h"

#include <QByteArray>
#include <QHash>
#include <QVariant>

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
    // The "error" object's name, for error answers.
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
