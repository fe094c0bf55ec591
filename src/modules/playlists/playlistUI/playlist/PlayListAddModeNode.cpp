#include "playlistUI/playlist/PlayListAddModeNode.h"

#include "PlayListsVocabulary.h"

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
    } choices[] = {{VEXA_TR("Now"), "0"}, {VEXA_TR("After current"), "1"}, {VEXA_TR("Append"), "2"}};
    QVariantList rows;
    for (const auto& choice : choices) {
        CMPath choicePath = path();
        choicePath.setParams(request.path().params());
        choicePath.addParam(Param::Mode, QString::fromLatin1(choice.mode));
        appendRow(rows, request, row(choice.title, choicePath, VexaRolesType::Action));
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Playlists"), createRolesFromPath(request.path(), request.roleNames()),
                  request, true);
    return true;
}

bool PlayListAddModeNode::setDataRequest(const CMSetDataRequest& request)
{
    const CMPath& path = request.path();
    VexaPlayListPlAddItems record;
    record.setPlid(toInt(path.param(Param::Plid), -1));
    if (path.hasParam(Param::FromPlid))
        record.setFromPlid(toInt(path.param(Param::FromPlid), -1));
    record.setMode(toInt(path.param(Param::Mode), -1));
    QList<CMPath> items;
    if (path.hasParam(Param::ItemId))
        items.append(CMPath(path.param(Param::ItemId)));
    record.setItems(items);
    invokeCommand(VexaPlayListPlAddItemsPath(), record, request);
    return true;
}
