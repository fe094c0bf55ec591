#include "playlistUI/playqueue/PlayQueueGetItemsNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"

PlayQueueGetItemsNode* PlayQueueGetItemsNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    PlayQueueGetItemsNode* node = createNode<PlayQueueGetItemsNode>(nodes, path, manager);
    node->setMediaData(playLogicMediaData());
    return node;
}

bool PlayQueueGetItemsNode::getRowsRequest(const CMGetRowsRequest& request)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "request=" << request.index());
    PlayListBase* queue = m_manager ? m_manager->getPlayQueue() : nullptr;
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "plid: " << (queue ? queue->getUid() : -1));
    sendTracks(queue, VEXA_TR("PlayQueue tracks"), request);
    return true;
}
