#include "playlistUI/collection/CollectionGetItemsNode.h"

#include "PlayListsVocabulary.h"

#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"

CollectionGetItemsNode* CollectionGetItemsNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createNode<CollectionGetItemsNode>(nodes, path, manager);
}

bool CollectionGetItemsNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "request=" << request.index());
    LOG4CPLUS_TRACE(logger, "path: " << request.path());
    const int clid = request.path().param(Param::Clid).toInt();
    LOG4CPLUS_TRACE(logger, "clid: " << clid);
    const VexaRoles header = createRolesFromPath(request.path(), request.roleNames());
    CollectionBase* collection = m_manager ? m_manager->getCollectionByUid(clid) : nullptr;
    if (!collection) {
        sendRowsReply(QVariantList(), 0, VEXA_TR("Collection - "), header, request, true);
        return true;
    }
    const QList<PlayListBase*>& playlists = collection->getPlayLists();
    LOG4CPLUS_TRACE(logger, "collection size: " << playlists.size());
    QVariantList rows;
    for (PlayListBase* playlist : playlists) {
        LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
        VexaRoles roles = row(playlist->getName(),
                              itemsPathOf(playlist->getUid()),
                              VexaRolesType::Container);
        roles.setContainerPlayable(true);
        roles.setMediaData(playLogicMediaData());
        // The menu names the collection too, so that it can offer to take the
        // playlist out of it: the menu has no other way to know where it was opened.
        roles.setContext(contextMenuRoles(VEXA_TR("Playlist") + QStringLiteral(" - ") + playlist->getName(),
                                          VexaPlayListPlContextPath()
                                              .withParam(Param::Plid, toStr(playlist->getUid()))
                                              .withParam(Param::Clid, toStr(collection->getUid()))));
        appendRow(rows, request, roles);
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Collection - ") + collection->getName(), header, request, true);
    return true;
}
