#include "playlistUI/playlist/PlayListGetListNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListBase.h"
#include "playlistUI/playlist/PlayListGetItemsNode.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"

PlayListGetListNode* PlayListGetListNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createNode<PlayListGetListNode>(nodes, path, manager);
}

bool PlayListGetListNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "request=" << request.index());
    QVariantList rows;
    // The create row points at the root, which carries out the creation.
    CMPath createPath = VexaPlayListsRootPath();
    createPath.setParams(request.path().params());
    createPath.addParam(Param::Action, QStringLiteral("createPl"));
    appendRow(rows, request, inputRow(VEXA_TR("Create new playlist"), createPath, stringValue(QString())));
    if (m_manager) {
        for (PlayListBase* playlist : m_manager->getAllPlayList()) {
            LOG4CPLUS_TRACE(logger, "plname: " << playlist->getName());
            LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
            VexaRoles roles = row(playlist->getName(),
                                  itemsPathOf(playlist->getUid()),
                                  VexaRolesType::Container);
            roles.setMediaData(playLogicMediaData());
            roles.setContext(contextMenuRoles(
                VEXA_TR("Playlist Context Menu") + QStringLiteral(" - ") + playlist->getName(),
                VexaPlayListPlContextPath().withParam(Param::Plid, toStr(playlist->getUid()))));
            appendRow(rows, request, roles);
        }
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Playlists"), createRolesFromPath(request.path(), request.roleNames()),
                  request, true);
    return true;
}

void PlayListGetListNode::createPlaylistNode(const int& plid)
{
    if (!m_itemsNodeMap.contains(plid)) {
        m_itemsNodeMap.insert(plid, PlayListGetItemsNode::create(
                                        nodes(), itemsPathOf(plid), m_manager));
    }
    debugPlaylistNodes();
}

void PlayListGetListNode::deletePlaylistNode(const int& plid)
{
    if (PlayListGetItemsNode* node = m_itemsNodeMap.take(plid))
        node->release();
    debugPlaylistNodes();
}

void PlayListGetListNode::createPlaylistNodes()
{
    if (!m_manager)
        return;
    for (PlayListBase* playlist : m_manager->getAllPlayList()) {
        LOG4CPLUS_TRACE(PlayListsLog::logger(), "plid: " << playlist->getUid());
        createPlaylistNode(playlist->getUid());
    }
}

void PlayListGetListNode::debugPlaylistNodes()
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    LOG4CPLUS_TRACE(logger, "m_itemsNodeMap keys.count(): " << m_itemsNodeMap.keys().count());
    for (int key : m_itemsNodeMap.keys())
        LOG4CPLUS_TRACE(logger, "m_itemsNodeMap key: " << key);
}
