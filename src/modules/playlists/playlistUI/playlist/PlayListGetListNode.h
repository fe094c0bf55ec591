#pragma once

#include "playlistUI/BaseNode.h"

#include <QHash>

class PlayListGetItemsNode;

// The plain list of playlists, with a row that creates one.
class PlayListGetListNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayListGetListNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;

    // A registry of tracks nodes of its own, for hosts that let this list own them.
    void createPlaylistNode(const int& plid);
    void deletePlaylistNode(const int& plid);
    void createPlaylistNodes();
    void debugPlaylistNodes();

private:
    QHash<int, PlayListGetItemsNode*> m_itemsNodeMap;
};
