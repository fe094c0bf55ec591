#include "PlayListTrackContextNode.h"

#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListPlMoveItems.h"
#include "VexaPlayListPlRemoveItems.h"

namespace {

const QString kAction = QStringLiteral("action");
const QString kPlid = QStringLiteral("plid");
const QString kFromPlid = QStringLiteral("fromplid");
const QString kItemId = QStringLiteral("itemid");
const QString kSeqNum = QStringLiteral("seqnum");
const QString kFrom = QStringLiteral("from");

} // namespace

PlayListTrackContextNode* PlayListTrackContextNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayListTrackContextNode>(nodes, path, manager);
}

bool PlayListTrackContextNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const CMPath& requestPath = request.path();
    const QString plid = requestPath.param(kPlid);
    const QString seqnum = requestPath.param(kSeqNum);
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "plid: " << plid);
    const QString itemPath = VexaPlayListItemPath().appended(requestPath.param(kItemId)).toEncoded();
    QVariantList rows;

    VexaRoles toQueue = row(NODE_TR("Add to playqueue"),
                            VexaPlayListPlSelectAddModePath()
                                .withParam(kAction, QStringLiteral("cmnode"))
                                .withParam(kFromPlid, plid)
                                .withParam(kItemId, itemPath)
                                .withParam(kPlid, QStringLiteral("0")),
                            VexaRolesType::Container);
    toQueue.setContainerType(VexaRolesContainerType::ContextMenu);
    appendRow(rows, request, toQueue);

    VexaRoles toPlaylist = row(NODE_TR("Add to playlist"),
                               VexaPlayListPlAddToPlaylistPath()
                                   .withParam(kAction, QStringLiteral("cmnode"))
                                   .withParam(kFromPlid, plid)
                                   .withParam(kItemId, itemPath)
                                   .withParam(QStringLiteral("preparepath"), VexaPlayListPlPrepareItemsPath().toEncoded()),
                               VexaRolesType::Container);
    toPlaylist.setContainerType(VexaRolesContainerType::ContextMenu);
    appendRow(rows, request, toPlaylist);

    // Moving names the playlist "plid", removing names it "fromplid": each is read back under its own key.
    appendRow(rows, request,
              inputRow(NODE_TR("Move track"), ownPath({{kAction, QStringLiteral("moveTr")}, {kPlid, plid}, {kFrom, seqnum}}),
                       stringValue(QString())));
    appendRow(rows, request,
              row(NODE_TR("Remove track"), ownPath({{kAction, QStringLiteral("removeTr")}, {kFromPlid, plid}, {kSeqNum, seqnum}}),
                  VexaRolesType::Action));
    sendRowsReply(rows, rows.size(), NODE_TR("Track Context Menu"),
                  createRolesFromPath(requestPath, request.roleNames()), request, true);
    return true;
}

bool PlayListTrackContextNode::setDataRequest(const CMSetDataRequest& request)
{
    const CMPath& path = request.path();
    const QString action = path.param(kAction);
    if (action == QLatin1String("moveTr")) {
        VexaPlayListPlMoveItems record;
        record.setPlid(toInt(path.param(kPlid), -1));
        record.setItems({toInt(path.param(kFrom), -1)});
        record.setTo(toInt(VexaValue(request.value().toHash()).string_(), -1));
        invokeCommand(VexaPlayListPlMoveItemspath(), record, request);
        return true;
    }
    if (action == QLatin1String("removeTr")) {
        VexaPlayListPlRemoveItems record;
        record.setPlid(toInt(path.param(kFromPlid), -1));
        record.setItems({toInt(path.param(kSeqNum), -1)});
        invokeCommand(VexaPlayListPlRemoveItemsPath(), record, request);
        return true;
    }
    return false;
}
