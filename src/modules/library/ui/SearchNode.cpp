#include "SearchNode.h"

#include "LibraryPaths.h"

#include "VexaActionReply.h"

bool SearchNode::setDataRequest(const CMSetDataRequest& request)
{
    const VexaValue text(request.value().toHash());
    VexaValue value;
    value.setString_(LibraryPaths::search().withParam(LibraryPaths::Query, text.string_()).toEncoded());
    VexaRoles result;
    result.setValue(value);
    VexaActionReply reply;
    reply.setXclass(QStringLiteral("VexaActionReply"));
    reply.setResult(result);
    request.reply().setData(reply.toVariant());
    return true;
}
