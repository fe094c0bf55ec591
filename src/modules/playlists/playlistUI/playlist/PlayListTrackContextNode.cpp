#include "playlistUI/playlist/PlayListTrackContextNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListPlMoveItems.h"
#include "VexaPlayListPlRemoveItems.h"

PlayListTrackContextNode* PlayListTrackContextNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayListTrackContextNode>(nodes, path, manager);
}

bool PlayListTrackContextNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const CMPath& requestPath = request.path();
    const QString plid = requestPath.param(Param::Plid);
    const QString seqnum = requestPath.param(Param::SeqNum);
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "plid: " << plid);
    const QString itemPath = VexaPlayListItemPath().appended(requestPath.param(Param::ItemId)).toEncoded();
    QVariantList rows;

    VexaRoles toQueue = row(VEXA_TR("Add to playqueue"),
                            VexaPlayListPlSelectAddModePath()
                                .withParam(Param::Action, QStringLiteral("cmnode"))
                                .withParam(Param::FromPlid, plid)
                                .withParam(Param::ItemId, itemPath)
                                .withParam(Param::Plid, QStringLiteral("0")),
                            VexaRolesType::Container);
    toQueue.setContainerType(VexaRolesContainerType::ContextMenu);
    appendRow(rows, request, toQueue);

    VexaRoles toPlaylist = row(VEXA_TR("Add to playlist"),
                               VexaPlayListPlAddToPlaylistPath()
                                   .withParam(Param::Action, QStringLiteral("cmnode"))
                                   .withParam(Param::FromPlid, plid)
                                   .withParam(Param::ItemId, itemPath)
                                   .withParam(QStringLiteral("preparepath"), VexaPlayListPlPrepareItemsPath().toEncoded()),
                               VexaRolesType::Container);
    toPlaylist.setContainerType(VexaRolesContainerType::ContextMenu);
    appendRow(rows, request, toPlaylist);

    // Moving names the playlist "plid", removing names it "fromplid": each is read back under its own key.
    appendRow(rows, request,
              inputRow(VEXA_TR("Move track"), ownPath({{Param::Action, QStringLiteral("moveTr")}, {Param::Plid, plid}, {Param::From, seqnum}}),
                       stringValue(QString())));
    appendRow(rows, request,
              row(VEXA_TR("Remove track"), ownPath({{Param::Action, QStringLiteral("removeTr")}, {Param::FromPlid, plid}, {Param::SeqNum, seqnum}}),
                  VexaRolesType::Action));
    sendRowsReply(rows, rows.size(), VEXA_TR("Track Context Menu"),
                  createRolesFromPath(requestPath, request.roleNames()), request, true);
    return true;
}

bool PlayListTrackContextNode::setDataRequest(const CMSetDataRequest& request)
{
    const CMPath& path = request.path();
    const QString action = path.param(Param::Action);
    if (action == QLatin1String("moveTr")) {
        VexaPlayListPlMoveItems record;
        record.setPlid(toInt(path.param(Param::Plid), -1));
        record.setItems({toInt(path.param(Param::From), -1)});
        record.setTo(toInt(VexaValue(request.value().toHash()).string_(), -1));
        invokeCommand(VexaPlayListPlMoveItemspath(), record, request);
        return true;
    }
    if (action == QLatin1String("removeTr")) {
        VexaPlayListPlRemoveItems record;
        record.setPlid(toInt(path.param(Param::FromPlid), -1));
        record.setItems({toInt(path.param(Param::SeqNum), -1)});
        invokeCommand(VexaPlayListPlRemoveItemsPath(), record, request);
        return true;
    }
    return false;
}
