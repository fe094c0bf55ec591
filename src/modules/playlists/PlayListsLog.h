#pragma once

#include "VexaLog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <QString>

// The module's logger and its way of stopping on a broken invariant.
class PlayListsLog
{
public:
    // Logger "PlayLists", shared by the store, the model and the browse tree.
    static const log4cplus::Logger& logger();

    // Logs message at FATAL and ends the process. Unlike assert() this is never
    // compiled out: a store that can't be opened or a broken invariant must not
    // be run past in any build.
    [[noreturn]] static void fatalStop(const log4cplus::Logger& logger, const QString& message);
};
