#include "LogCapture.h"

LogCapture::LogCapture(const char* loggerName, int level)
    : m_logger(log4cplus::Logger::getInstance(loggerName))
    , m_previousLevel(m_logger.getLogLevel())
    , m_appender(new CapturingAppender)
{
    m_logger.setLogLevel(level);
    m_logger.addAppender(log4cplus::SharedAppenderPtr(m_appender.get()));
}

LogCapture::~LogCapture()
{
    m_logger.removeAppender(log4cplus::SharedAppenderPtr(m_appender.get()));
    m_logger.setLogLevel(m_previousLevel);
}

QStringList LogCapture::messages(int level) const
{
    QStringList result;
    const auto events = m_appender->events();
    for (const auto& event : events) {
        if (event.first == level)
            result.append(event.second);
    }
    return result;
}

bool LogCapture::contains(int level, const QString& message) const
{
    return messages(level).contains(message);
}

int LogCapture::count(int level, const QString& message) const
{
    return messages(level).count(message);
}

QStringList LogCapture::startingWith(const QString& prefix) const
{
    QStringList result;
    const auto events = m_appender->events();
    for (const auto& event : events) {
        if (event.second.startsWith(prefix))
            result.append(event.second);
    }
    return result;
}

void LogCapture::clear()
{
    m_appender->clear();
}

void LogCapture::echoToStderr()
{
    m_appender->setEcho(true);
}
