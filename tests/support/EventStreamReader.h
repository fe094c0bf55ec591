#pragma once

#include "HttpReply.h"
#include "HttpSocket.h"

#include <QByteArray>
#include <QString>

// Reads a Server-Sent Events stream: opens it, then hands out the payload of
// each "data:" line as it arrives. Comment lines are skipped.
class EventStreamReader
{
public:
    // Sends GET target and reads the response head; false when no head came.
    bool open(quint16 port, const QString& target, int timeoutMs = 15000);
    int status() const { return m_head.status; }
    const HttpReply& head() const { return m_head; }

    // The next data line's payload; false when none came within timeoutMs
    // or the stream ended.
    bool readData(QByteArray* data, int timeoutMs);
    // True once the server ended the stream.
    bool ended() const { return m_ended; }
    // Reads until the stream ends or timeoutMs passed; true when it ended.
    bool waitForEnd(int timeoutMs);

private:
    bool takeLine(QByteArray* line);
    bool readMore(const QDeadlineTimer& deadline);
    // Moves what m_raw holds into m_text; true when that added text or ended the stream.
    bool decode();

    HttpSocket m_socket;
    HttpReply m_head;
    bool m_chunked = false;
    bool m_ended = false;
    QByteArray m_raw;
    QByteArray m_text;
};
