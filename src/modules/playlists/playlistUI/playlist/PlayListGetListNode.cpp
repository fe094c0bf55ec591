#include "PlayListGetListNode.h"

#include "PlayListBase.h"
#include "PlayListGetItemsNode.h"
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
    PLAYLISTS_LOG_ENTER(logger, "request=" << request.index());
    QVariantList rows;
    // The create row points at the root, which carries out the creation.
    CMPath createPath = VexaPlayListsRootPath();
    createPath.setParams(request.path().params());
    createPath.addParam(QStringLiteral("action"), QStringLiteral("createPl"));
    appendRow(rows, request, inputRow(NODE_TR("Create new playlist"), createPath, stringValue(QString())));
    if (m_manager) {
        for (PlayListBase* playlist : m_manager->getAllPlayList()) {
            LOG4CPLUS_TRACE(logger, "plname: " << playlist->getName());
            LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
            VexaRoles roles = row(playlist->getName(),
                                  VexaPlayListPlGetItemsPath().appended(QStringLiteral("%1").arg(playlist->getUid())),
                                  VexaRolesType::Container);
            roles.setMediaData(playLogicMediaData());
            roles.setContext(contextMenuRoles(
                NODE_TR("Playlist Context Menu") + QStringLiteral(" - ") + playlist->getName(),
                VexaPlayListPlContextPath().withParam(QStringLiteral("plid"), toStr(playlist->getUid()))));
            appendRow(rows, request, roles);
        }
    }
    sendRowsReply(rows, rows.size(), NODE_TR("Playlists"), createRolesFromPath(request.path(), request.roleNames()),
                  request, true);
    return true;
}

void PlayListGetListNode::createPlaylistNode(const int& plid)
{
    if (!m_itemsNodeMap.contains(plid)) {
        m_itemsNodeMap.insert(plid, PlayListGetItemsNode::create(
                                        nodes(), VexaPlayListPlGetItemsPath().appended(toStr(plid)), m_manager));
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
