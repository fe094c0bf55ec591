#pragma once

#include "playlistUI/BaseNode.h"

#include "VexaPlayListItem.h"

#include <QCache>

class PlayListBase;

// The tracks of one playlist, at its tracks path; the playlist is the last
// segment of that path. Only the requested rows are read from the store.
class PlayListGetItemsNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    // Also gives the node media data naming the module's play logic, so that
    // playing the list goes through it.
    static PlayListGetItemsNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;

protected:
    // Rows fromRow..toRow of playlist (none when it is null), each with its
    // track menu, answered with the playlist's full size.
    void sendTracks(PlayListBase* playlist, const QString& title, const CMGetRowsRequest& request);

private:
    // The row of one track: its published roles with its menu.
    VexaRoles trackRow(PlayListBase* playlist, const VexaPlayListItem& item);

    // Rows of the tracks read last. Scrolling back and reading a list again
    // after a change parse each stored track once; a row is reused only
    // while the stored roles it came from and its position are unchanged.
    struct CachedRow
    {
        QString storedRoles;
        int sequenceNumber;
        VexaRoles roles;
    };
    static constexpr int CachedRows = 500;
    QCache<int, CachedRow> m_rows{CachedRows};
};
