#pragma once

#include <log4cplus/appender.h>

#include <QList>
#include <QPair>
#include <QString>

#include <mutex>

// A log4cplus appender that keeps every event's level and message, and can
// echo them to stderr (where death tests look for them).
class CapturingAppender : public log4cplus::Appender
{
public:
    CapturingAppender();
    ~CapturingAppender() override;

    void close() override;
    void setEcho(bool echo);
    QList<QPair<int, QString>> events() const;
    void clear();

protected:
    void append(const log4cplus::spi::InternalLoggingEvent& event) override;

private:
    mutable std::mutex m_mutex;
    QList<QPair<int, QString>> m_events;
    bool m_echo = false;
};
