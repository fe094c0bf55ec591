#pragma once

#include <QString>

// Sends every logger to standard error at the given level (TRACE ... FATAL).
class LogSetup
{
public:
    static void configure(const QString& level);
};
