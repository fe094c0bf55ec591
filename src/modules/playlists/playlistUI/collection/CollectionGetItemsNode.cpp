#include "CollectionGetItemsNode.h"

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
    PLAYLISTS_LOG_ENTER(logger, "request=" << request.index());
    LOG4CPLUS_TRACE(logger, "path: " << request.path());
    const int clid = request.path().param(QStringLiteral("clid")).toInt();
    LOG4CPLUS_TRACE(logger, "clid: " << clid);
    const VexaRoles header = createRolesFromPath(request.path(), request.roleNames());
    CollectionBase* collection = m_manager ? m_manager->getCollectionByUid(clid) : nullptr;
    if (!collection) {
        sendRowsReply(QVariantList(), 0, NODE_TR("Collection - "), header, request, true);
        return true;
    }
    const QList<PlayListBase*>& playlists = collection->getPlayLists();
    LOG4CPLUS_TRACE(logger, "collection size: " << playlists.size());
    QVariantList rows;
    for (PlayListBase* playlist : playlists) {
        LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
        VexaRoles roles = row(playlist->getName(),
                              VexaPlayListPlGetItemsPath().appended(QStringLiteral("%1").arg(playlist->getUid())),
                              VexaRolesType::Container);
        roles.setContainerPlayable(true);
        roles.setMediaData(playLogicMediaData());
        // The menu names the collection too, so that it can offer to take the
        // playlist out of it: the menu has no other way to know where it was opened.
        roles.setContext(contextMenuRoles(NODE_TR("Playlist") + QStringLiteral(" - ") + playlist->getName(),
                                          VexaPlayListPlContextPath()
                                              .withParam(QStringLiteral("plid"), toStr(playlist->getUid()))
                                              .withParam(QStringLiteral("clid"), toStr(collection->getUid()))));
        appendRow(rows, request, roles);
    }
    sendRowsReply(rows, rows.size(), NODE_TR("Collection - ") + collection->getName(), header, request, true);
    return true;
}
