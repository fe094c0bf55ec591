#include "playlistUI/playlist/PlayListGetItemsNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"

PlayListGetItemsNode* PlayListGetItemsNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    PlayListGetItemsNode* node = createNode<PlayListGetItemsNode>(nodes, path, manager);
    node->setMediaData(playLogicMediaData());
    return node;
}

bool PlayListGetItemsNode::getRowsRequest(const CMGetRowsRequest& request)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "request=" << request.index());
    const int uid = toInt(path().lastSegment(), -1);
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "plid: " << uid);
    PlayListBase* playlist = m_manager ? m_manager->getPlayListByUid(uid) : nullptr;
    const QString name = playlist ? playlist->getName() : QString();
    sendTracks(playlist, VEXA_TR("Playlist") + QStringLiteral(" - ") + name, request);
    return true;
}

void PlayListGetItemsNode::sendTracks(PlayListBase* playlist, const QString& title, const CMGetRowsRequest& request)
{
    QVariantList rows;
    int count = 0;
    if (playlist) {
        count = playlist->getSize();
        for (const VexaPlayListItem& item : playlist->getItems(request.fromRow(), request.toRow()))
            appendRow(rows, request, trackRow(playlist, item));
    }
    sendRowsReply(rows, count, title, createRolesFromPath(request.path(), request.roleNames()), request, false);
}

VexaRoles PlayListGetItemsNode::trackRow(PlayListBase* playlist, const VexaPlayListItem& item)
{
    const CachedRow* cached = m_rows.object(item.uid());
    if (cached && cached->sequenceNumber == item.sequenceNumber() && cached->storedRoles == item.vexaRoles())
        return cached->roles;
    const VexaRoles roles = addContextMenuToRoles(playlist->itemToVexaRoles(item), playlist->getUid());
    m_rows.insert(item.uid(), new CachedRow{item.vexaRoles(), item.sequenceNumber(), roles});
    return roles;
}
