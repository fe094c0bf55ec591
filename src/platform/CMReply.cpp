#include "CMReply.h"

#include "VexaLog.h"

QString cmReplyWrongTypeText()
{
    return QStringLiteral("Wrong type passed to CMReply::onSuccess()!");
}

void cmReplyReportWrongType()
{
    LOG4CPLUS_ERROR(log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("CMReply")), cmReplyWrongTypeText());
}
