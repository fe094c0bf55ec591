#include "TestItemsNode.h"

#include <CMGlobal.h>
#include <VexaRowsRoles.h>

#include <QtGlobal>

TestItemsNode::TestItemsNode(const CMPath& path) : CMListRowsNode(path)
{
    setTitle(TrString(QStringLiteral("Test items")));
}

bool TestItemsNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const int from = qBound(0, request.fromRow(), kRows - 1);
    const int to = qBound(from, request.toRow(), kRows - 1);
    QVariantList rows;
    for (int i = from; i <= to; ++i) {
        VexaRoles roles;
        roles.setTitle(QStringLiteral("Item %1").arg(i));
        roles.setPath(path().appended(QString::number(i)));
        roles.setType(VexaRolesType::Audio);
        rows.append(CMGlobal::itemRolesToList(request.roleNames(), roles));
    }
    VexaRoles header;
    header.setTitle(title().text());
    VexaRowsRoles reply;
    reply.setRoles(header);
    reply.setRowsCount(kRows);
    reply.setRows(rows);
    request.reply().setData(reply.toVariant());
    return true;
}
