#include "playlistUI/playqueue/PlayQueueContextNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListBase.h"
#include "PlayListManager.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListPlId.h"

PlayQueueContextNode* PlayQueueContextNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayQueueContextNode>(nodes, path, manager);
}

bool PlayQueueContextNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const QString uid = toStr(m_manager ? m_manager->getPlayQueue()->getUid() : 0);
    QVariantList rows;
    appendRow(rows, request, row(VEXA_TR("Play"), ownPath({{Param::Action, QStringLiteral("playPl")}, {Param::Plid, uid}}),
                                 VexaRolesType::Action));
    // The merge source travels as "fromplid" through the choosers to the add command.
    appendRow(rows, request,
              row(VEXA_TR("Merge with playlist"),
                  VexaPlayListPlAddToPlaylistPath()
                      .withParam(Param::Action, QStringLiteral("cmnode"))
                      .withParam(Param::Plid, uid)
                      .withParam(Param::FromPlid, uid),
                  VexaRolesType::Container));
    appendRow(rows, request, separatorRow());
    appendRow(rows, request, row(VEXA_TR("Clear"), ownPath({{Param::Action, QStringLiteral("clearPl")}, {Param::Plid, uid}}),
                                 VexaRolesType::Action));
    sendRowsReply(rows, rows.size(), VEXA_TR("PlayQueue Context Menu"),
                  createRolesFromPath(request.path(), request.roleNames()), request, true);
    return true;
}

bool PlayQueueContextNode::setDataRequest(const CMSetDataRequest& request)
{
    const QString action = request.path().param(Param::Action);
    if (action != QLatin1String("playPl") && action != QLatin1String("clearPl"))
        return false;
    VexaPlayListPlId record;
    record.setPlid(toInt(request.path().param(Param::Plid), -1));
    invokeCommand(action == QLatin1String("playPl") ? VexaPlayListPlPlayPath() : VexaPlayListPlClearPath(), record,
                  request);
    return true;
}
