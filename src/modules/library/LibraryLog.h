#pragma once

#include "VexaLog.h"

// The module's logger, "Library", shared by the store, the scan and the browse tree.
const log4cplus::Logger& libraryLogger();
