#include "PlayListAddModeNode.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListPlAddItems.h"

PlayListAddModeNode* PlayListAddModeNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayListAddModeNode>(nodes, path, manager);
}

bool PlayListAddModeNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const struct
    {
        QString title;
        const char* mode;
    } choices[] = {{NODE_TR("Now"), "0"}, {NODE_TR("After current"), "1"}, {NODE_TR("Append"), "2"}};
    QVariantList rows;
    for (const auto& choice : choices) {
        CMPath choicePath = path();
        choicePath.setParams(request.path().params());
        choicePath.addParam(QStringLiteral("mode"), QString::fromLatin1(choice.mode));
        appendRow(rows, request, row(choice.title, choicePath, VexaRolesType::Action));
    }
    sendRowsReply(rows, rows.size(), NODE_TR("Playlists"), createRolesFromPath(request.path(), request.roleNames()),
                  request, true);
    return true;
}

bool PlayListAddModeNode::setDataRequest(const CMSetDataRequest& request)
{
    const CMPath& path = request.path();
    VexaPlayListPlAddItems record;
    record.setPlid(toInt(path.param(QStringLiteral("plid")), -1));
    if (path.hasParam(QStringLiteral("fromplid")))
        record.setFromPlid(toInt(path.param(QStringLiteral("fromplid")), -1));
    record.setMode(toInt(path.param(QStringLiteral("mode")), -1));
    QList<CMPath> items;
    if (path.hasParam(QStringLiteral("itemid")))
        items.append(CMPath(path.param(QStringLiteral("itemid"))));
    record.setItems(items);
    invokeCommand(VexaPlayListPlAddItemsPath(), record, request);
    return true;
}
