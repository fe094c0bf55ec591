#include "ui/SearchNode.h"

#include "LibraryPaths.h"

#include "VexaActionReply.h"

bool SearchNode::setDataRequest(const CMSetDataRequest& request)
{
    const VexaValue text(request.value().toHash());
    VexaValue value;
    value.setString_(LibraryPaths::search().withParam(LibraryPaths::Query, text.string_()).toEncoded());
    request.reply().setData(VexaActionReply::withValue(value).toVariant());
    return true;
}
