#pragma once

#include "HttpClient.h"

// Reads a Server-Sent Events stream: opens it, then hands out the payload of
// each "data:" line as it arrives. Comment lines are skipped.
class EventStreamReader
{
public:
    // Sends GET target and reads the response head; false when no head came.
    bool open(quint16 port, const QString& target, int timeoutMs = 15000, const QString& from = QString());
    int status() const { return m_head.status; }
    const HttpReply& head() const { return m_head; }

    // The next data line's payload; false when none came within timeoutMs
    // or the stream ended.
    bool readData(QByteArray* data, int timeoutMs);
    // Reads until the stream ends or timeoutMs passed; true when it ended.
    bool waitForEnd(int timeoutMs);

private:
    // Reads more of the stream into m_text; false when nothing came or it ended.
    bool readMore(const QDeadlineTimer& deadline);

    std::unique_ptr<HttpSocket> m_socket;
    HttpReply m_head;
    bool m_chunked = false;
    bool m_ended = false;
    QByteArray m_raw;
    QByteArray m_text;
};
