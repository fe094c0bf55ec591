#pragma once

#include "CMPath.h"
#include "VexaGlobal.h"
#include "VexaHash.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <ostream>

// The text that follows "Enter " in a function's entry line: the scoped name
// of the function whose signature (__PRETTY_FUNCTION__) is given, such as
// "PlayListWorker::on_setDataRequest" for
// "void PlayListWorker::on_setDataRequest(const CMSetDataRequest&)".
VEXA_API QString dbglog_scopedFunction(const char* signature, const char* loggerName);

// Stream operators so that log statements can print the platform's types.
VEXA_API std::ostream& operator<<(std::ostream& out, const QString& text);
VEXA_API std::ostream& operator<<(std::ostream& out, const QStringList& list);
VEXA_API std::ostream& operator<<(std::ostream& out, const QList<int>& list);
VEXA_API std::ostream& operator<<(std::ostream& out, const QVariant& value);
VEXA_API std::ostream& operator<<(std::ostream& out, const CMPath& path);
// A value hash prints as its JSON text.
VEXA_API std::ostream& operator<<(std::ostream& out, const VexaHash& hash);

// "true" or "false", for log lines.
VEXA_API const char* boolText(bool value);

// Writes "Enter <scoped function>: <message>" on the logger at level, one of
// log4cplus' level names (TRACE, DEBUG, INFO, ...). Most entries are traced;
// the few that matter in a support log are written higher.
#define VEXA_LOG_ENTER(level, logger, message)                                                                         \
    LOG4CPLUS_##level(logger, "Enter " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "") << ": " << message)
