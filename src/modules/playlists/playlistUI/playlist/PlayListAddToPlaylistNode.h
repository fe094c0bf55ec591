#pragma once

#include "playlistUI/BaseNode.h"

// Picks the playlist to add to; each row leads to the choice of position.
class PlayListAddToPlaylistNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayListAddToPlaylistNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;

protected:
    // A new playlist shows up in this chooser, which stays open.
    void watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request) override;
};
