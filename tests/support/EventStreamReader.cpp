#include "EventStreamReader.h"

bool EventStreamReader::open(quint16 port, const QString& target, int timeoutMs)
{
    if (!m_socket.connectTo(QStringLiteral("127.0.0.1"), port))
        return false;
    const QByteArray request = "GET " + target.toUtf8() + " HTTP/1.1\r\nHost: 127.0.0.1\r\nAccept: text/event-stream\r\n\r\n";
    if (!m_socket.sendAll(request))
        return false;
    if (!HttpReply::readHead(m_socket, QDeadlineTimer(timeoutMs), &m_head, &m_raw))
        return false;
    m_chunked = m_head.headers.value("transfer-encoding").toLower().contains("chunked");
    return true;
}

bool EventStreamReader::readData(QByteArray* data, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        QByteArray line;
        while (takeLine(&line)) {
            if (line.startsWith("data:")) {
                *data = line.mid(5).trimmed();
                return true;
            }
        }
        if (m_ended || !readMore(deadline))
            return false;
    }
}

bool EventStreamReader::waitForEnd(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!m_ended) {
        if (!readMore(deadline))
            return m_ended;
    }
    return true;
}

bool EventStreamReader::takeLine(QByteArray* line)
{
    const int end = m_text.indexOf('\n');
    if (end < 0)
        return false;
    *line = m_text.left(end);
    m_text.remove(0, end + 1);
    return true;
}

bool EventStreamReader::readMore(const QDeadlineTimer& deadline)
{
    // Bytes after the head or a partial chunk may already wait in m_raw.
    if (decode())
        return true;
    if (!m_socket.readSome(&m_raw, deadline)) {
        if (m_socket.peerClosed())
            m_ended = true;
        return false;
    }
    decode();
    return true;
}

bool EventStreamReader::decode()
{
    const int before = m_text.size();
    if (m_chunked) {
        if (HttpReply::takeChunks(&m_raw, &m_text))
            m_ended = true;
    } else {
        m_text += m_raw;
        m_raw.clear();
    }
    return m_text.size() != before || m_ended;
}
