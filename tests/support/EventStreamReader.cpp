#include "EventStreamReader.h"

bool EventStreamReader::open(quint16 port, const QString& target, int timeoutMs, const QString& from)
{
    m_socket = HttpClient(port, from).send("GET", target, QByteArray());
    if (!m_socket || !HttpReply::readHead(*m_socket, QDeadlineTimer(timeoutMs), &m_head, &m_raw))
        return false;
    m_chunked = m_head.headers.value("transfer-encoding").toLower().contains("chunked");
    return true;
}

bool EventStreamReader::readData(QByteArray* data, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        int end;
        while ((end = m_text.indexOf('\n')) >= 0) {
            const QByteArray line = m_text.left(end);
            m_text.remove(0, end + 1);
            if (line.startsWith("data:")) {
                *data = line.mid(5).trimmed();
                return true;
            }
        }
        if (!readMore(deadline))
            return false;
    }
}

bool EventStreamReader::waitForEnd(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (readMore(deadline)) {
    }
    return m_ended;
}

bool EventStreamReader::readMore(const QDeadlineTimer& deadline)
{
    // Bytes after the head or a partial chunk may already wait in m_raw.
    while (!m_ended) {
        const int before = m_text.size();
        if (!m_chunked) {
            m_text += m_raw;
            m_raw.clear();
        } else if (HttpReply::takeChunks(&m_raw, &m_text)) {
            m_ended = true;
        }
        if (m_text.size() != before)
            return true;
        if (!m_socket->readSome(&m_raw, deadline)) {
            m_ended = m_socket->peerClosed();
            return false;
        }
    }
    return false;
}
