#include "playlistUI/playlist/PlayListAddToPlaylistNode.h"

#include "PlayListsVocabulary.h"

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
              inputRow(VEXA_TR("Create new playlist"),
                       ownPath({{Param::ItemId, requestPath.param(Param::ItemId)},
                                {Param::Action, QStringLiteral("createPl")}}),
                       stringValue(QString())));
    appendRow(rows, request, separatorRow());
    if (m_manager) {
        for (PlayListBase* playlist : m_manager->getAllPlayList()) {
            LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
            LOG4CPLUS_TRACE(logger, "fromplid: " << requestPath.param(Param::FromPlid));
            CMPath next = VexaPlayListPlSelectAddModePath();
            next.setParams(requestPath.params());
            next.addParam(Param::Plid, toStr(playlist->getUid()));
            VexaRoles roles = row(playlist->getName(), next, VexaRolesType::Container);
            roles.setContainerPlayable(true);
            roles.setContainerType(VexaRolesContainerType::ContextMenu);
            appendRow(rows, request, roles);
        }
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Playlists"), createRolesFromPath(requestPath, request.roleNames()),
                  request, true);
    return true;
}

bool PlayListAddToPlaylistNode::setDataRequest(const CMSetDataRequest& request)
{
    if (request.path().param(Param::Action) != QLatin1String("createPl"))
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
