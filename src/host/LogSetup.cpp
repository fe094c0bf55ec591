#include "LogSetup.h"

#include <log4cplus/consoleappender.h>
#include <log4cplus/initializer.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>
#include <log4cplus/loglevel.h>

#include <memory>

void LogSetup::configure(const QString& level)
{
    log4cplus::initialize();
    log4cplus::SharedAppenderPtr appender(new log4cplus::ConsoleAppender(true /* stderr */, true /* flush */));
    appender->setLayout(std::unique_ptr<log4cplus::Layout>(
        new log4cplus::PatternLayout(LOG4CPLUS_TEXT("%D{%H:%M:%S.%q} %-5p [%c] %m%n"))));
    log4cplus::Logger root = log4cplus::Logger::getRoot();
    root.removeAllAppenders();
    root.addAppender(appender);
    root.setLogLevel(log4cplus::getLogLevelManager().fromString(LOG4CPLUS_STRING_TO_TSTRING(level.toStdString())));
}
