#include "PlayListAddToPlaylistNode.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListPlCreate.h"

PlayListAddToPlaylistNode* PlayListAddToPlaylistNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayListAddToPlaylistNode>(nodes, path, manager);
}

bool PlayListAddToPlaylistNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    const CMPath& requestPath = request.path();
    QVariantList rows;
    appendRow(rows, request,
              inputRow(NODE_TR("Create new playlist"),
                       ownPath({{QStringLiteral("itemid"), requestPath.param(QStringLiteral("itemid"))},
                                {QStringLiteral("action"), QStringLiteral("createPl")}}),
                       stringValue(QString())));
    appendRow(rows, request, separatorRow());
    if (m_manager) {
        for (PlayListBase* playlist : m_manager->getAllPlayList()) {
            LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
            LOG4CPLUS_TRACE(logger, "fromplid: " << requestPath.param(QStringLiteral("fromplid")));
            CMPath next = VexaPlayListPlSelectAddModePath();
            next.setParams(requestPath.params());
            next.addParam(QStringLiteral("plid"), toStr(playlist->getUid()));
            VexaRoles roles = row(playlist->getName(), next, VexaRolesType::Container);
            roles.setContainerPlayable(true);
            roles.setContainerType(VexaRolesContainerType::ContextMenu);
            appendRow(rows, request, roles);
        }
    }
    sendRowsReply(rows, rows.size(), NODE_TR("Playlists"), createRolesFromPath(requestPath, request.roleNames()),
                  request, true);
    return true;
}

bool PlayListAddToPlaylistNode::setDataRequest(const CMSetDataRequest& request)
{
    if (request.path().param(QStringLiteral("action")) != QLatin1String("createPl"))
        return false;
    VexaPlayListPlCreate record;
    record.setName(VexaValue(request.value().toHash()).string_());
    invokeCommand(VexaPlayListPlCreatePath(), record, request);
    return true;
}

void PlayListAddToPlaylistNode::watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request)
{
    passReply(reply, request, false);
}
