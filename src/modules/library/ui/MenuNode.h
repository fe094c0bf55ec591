#pragma once

#include "ui/LibraryNode.h"

// library:/menu?itemid=PATH&title=TITLE: the menu of a track or a container,
// whose entries open the Playlists module's choosers for PATH.
class MenuNode : public LibraryNode
{
public:
    MenuNode(const CMPath& path, Browser* browser);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
