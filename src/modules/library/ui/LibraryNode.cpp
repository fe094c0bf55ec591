#include "ui/LibraryNode.h"

#include "CMGlobal.h"
#include "VexaRowsRoles.h"

LibraryNode::LibraryNode(const CMPath& path, Browser* browser) : CMListRowsNode(path), m_browser(browser) {}

bool LibraryNode::pageBounds(const CMGetRowsRequest& request, int count, int* from, int* to)
{
    if (count <= 0)
        return false;
    *from = qBound(0, request.fromRow(), count - 1);
    *to = qBound(0, request.toRow(), count - 1);
    if (*from > *to)
        *from = *to;
    return true;
}

void LibraryNode::answer(const CMGetRowsRequest& request, const QString& title, const QList<VexaRoles>& page, int count)
{
    setTitle(TrString(title));
    VexaRoles header = getDataRoles(request.roleNames(), request.path().params());
    header.setTitle(title);
    QVariantList rows;
    for (const VexaRoles& roles : page)
        rows.append(CMGlobal::itemRolesToList(request.roleNames(), roles));
    VexaRowsRoles reply;
    reply.setRoles(header);
    reply.setRowsCount(count);
    reply.setRows(rows);
    request.reply().setData(reply.toVariant());
}
