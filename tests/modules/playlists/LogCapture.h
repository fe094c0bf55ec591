#pragma once

#include "CapturingAppender.h"

#include <log4cplus/logger.h>

#include <QString>
#include <QStringList>

// Captures what one logger writes for the lifetime of the object, with the
// logger's level set as given (TRACE by default, so entry lines show).
class LogCapture
{
public:
    explicit LogCapture(const char* loggerName = "PlayLists", int level = log4cplus::TRACE_LOG_LEVEL);
    ~LogCapture();

    // Messages at exactly this level, oldest first.
    QStringList messages(int level) const;
    bool contains(int level, const QString& message) const;
    int count(int level, const QString& message) const;
    // Messages at any level that start with prefix.
    QStringList startingWith(const QString& prefix) const;
    void clear();
    void echoToStderr();

private:
    log4cplus::Logger m_logger;
    int m_previousLevel;
    log4cplus::helpers::SharedObjectPtr<CapturingAppender> m_appender;
};
