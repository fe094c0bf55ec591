#include "HttpExchange.h"

#include <microhttpd.h>

HttpExchange::HttpExchange(MHD_Connection* connection, int targetBytes, int maxBodyBytes)
    : m_connection(connection), m_targetBytes(targetBytes), m_maxBodyBytes(maxBodyBytes)
{
}

void HttpExchange::setRequest(const QByteArray& method, const QByteArray& url)
{
    m_method = method;
    m_url = url;
}

void HttpExchange::appendBody(const char* data, size_t size)
{
    if (m_bodyTooLarge)
        return;
    if (size > size_t(m_maxBodyBytes - m_body.size())) {
        m_bodyTooLarge = true;
        m_body.clear();
        m_body.squeeze();
        return;
    }
    if (m_body.isEmpty()) {
        // Room for the whole body at once: a large one is not copied again
        // each time it outgrows its buffer.
        const char* length = MHD_lookup_connection_value(m_connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_CONTENT_LENGTH);
        const qlonglong expected = length ? QByteArray(length).toLongLong() : 0;
        if (expected > 0 && expected <= m_maxBodyBytes)
            m_body.reserve(int(expected));
    }
    m_body.append(data, int(size));
}

void HttpExchange::clearWake()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_woken = false;
}

bool HttpExchange::suspendUnlessWoken()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_woken || m_closed)
        return false;
    MHD_suspend_connection(m_connection);
    m_suspended = true;
    return true;
}

void HttpExchange::wake()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_woken = true;
    // Resuming a connection that is not suspended is undefined, hence the flag.
    if (m_suspended && !m_closed) {
        m_suspended = false;
        MHD_resume_connection(m_connection);
    }
}

void HttpExchange::close()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
}

bool HttpExchange::isClosed() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed;
}
