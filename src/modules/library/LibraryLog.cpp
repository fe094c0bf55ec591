#include "LibraryLog.h"

const log4cplus::Logger& libraryLogger()
{
    static const log4cplus::Logger instance = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("Library"));
    return instance;
}
