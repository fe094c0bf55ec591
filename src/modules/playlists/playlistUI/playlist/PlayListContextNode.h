#pragma once

#include "playlistUI/BaseNode.h"

// The menu of one playlist ("plid"), opened from a list of playlists or from
// a collection ("clid").
class PlayListContextNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayListContextNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;

protected:
    // Renaming and toggling keep the menu open: it shows the new state.
    void watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request) override;
};
