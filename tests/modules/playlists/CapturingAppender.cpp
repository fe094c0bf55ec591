#include "CapturingAppender.h"

#include <log4cplus/spi/loggingevent.h>

#include <cstdio>

CapturingAppender::CapturingAppender() = default;

CapturingAppender::~CapturingAppender()
{
    destructorImpl();
}

void CapturingAppender::close()
{
    closed = true;
}

void CapturingAppender::setEcho(bool echo)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_echo = echo;
}

QList<QPair<int, QString>> CapturingAppender::events() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_events;
}

void CapturingAppender::clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_events.clear();
}

void CapturingAppender::append(const log4cplus::spi::InternalLoggingEvent& event)
{
    const QString message = QString::fromStdString(event.getMessage());
    std::lock_guard<std::mutex> lock(m_mutex);
    m_events.append(qMakePair(int(event.getLogLevel()), message));
    if (m_echo) {
        std::fprintf(stderr, "%d %s\n", int(event.getLogLevel()), message.toUtf8().constData());
        std::fflush(stderr);
    }
}
