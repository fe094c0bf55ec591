#pragma once

#include "playlistUI/BaseNode.h"

// Picks the collection to add a playlist ("plid") to, or creates one.
class CollectionAddToClNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static CollectionAddToClNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;

protected:
    // Only adding closes the chooser; a new collection shows up in it.
    void watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request) override;
};
