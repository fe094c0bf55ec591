#include "PlayListsLog.h"

#include <cstdlib>

const log4cplus::Logger& PlayListsLog::logger()
{
    static const log4cplus::Logger instance = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("PlayLists"));
    return instance;
}

void PlayListsLog::fatalStop(const log4cplus::Logger& logger, const QString& message)
{
    LOG4CPLUS_FATAL(logger, message);
    std::abort();
}
