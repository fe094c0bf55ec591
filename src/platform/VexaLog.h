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

// Writes "Enter <scoped function>: <message>" at TRACE on the logger.
#define VEXA_LOG_ENTER(logger, message)                                                                                \
    LOG4CPLUS_TRACE(logger, "Enter " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "") << ": " << message)
