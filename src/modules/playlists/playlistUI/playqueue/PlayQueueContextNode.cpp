#include "PlayQueueContextNode.h"

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
    const QString action = QStringLiteral("action");
    const QString plid = QStringLiteral("plid");
    QVariantList rows;
    appendRow(rows, request, row(NODE_TR("Play"), ownPath({{action, QStringLiteral("playPl")}, {plid, uid}}),
                                 VexaRolesType::Action));
    // The merge source travels as "fromplid" through the choosers to the add command.
    appendRow(rows, request,
              row(NODE_TR("Merge with playlist"),
                  VexaPlayListPlAddToPlaylistPath()
                      .withParam(action, QStringLiteral("cmnode"))
                      .withParam(plid, uid)
                      .withParam(QStringLiteral("fromplid"), uid),
                  VexaRolesType::Container));
    appendRow(rows, request, separatorRow());
    appendRow(rows, request, row(NODE_TR("Clear"), ownPath({{action, QStringLiteral("clearPl")}, {plid, uid}}),
                                 VexaRolesType::Action));
    sendRowsReply(rows, rows.size(), NODE_TR("PlayQueue Context Menu"),
                  createRolesFromPath(request.path(), request.roleNames()), request, true);
    return true;
}

bool PlayQueueContextNode::setDataRequest(const CMSetDataRequest& request)
{
    const QString action = request.path().param(QStringLiteral("action"));
    if (action != QLatin1String("playPl") && action != QLatin1String("clearPl"))
        return false;
    VexaPlayListPlId record;
    record.setPlid(toInt(request.path().param(QStringLiteral("plid")), -1));
    invokeCommand(action == QLatin1String("playPl") ? VexaPlayListPlPlayPath() : VexaPlayListPlClearPath(), record,
                  request);
    return true;
}
