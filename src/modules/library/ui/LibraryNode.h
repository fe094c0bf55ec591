#pragma once

#include "CMListRowsNode.h"
#include "CMNodes.h"
#include "VexaRoles.h"

class Browser;

// The base of the module's browse nodes: it answers a page of rows with the
// list's title and its whole count, as every list of the platform does.
class LibraryNode : public CMListRowsNode
{
public:
    LibraryNode(const CMPath& path, Browser* browser);

    // Registers a node of class T at path in nodes.
    template <class T>
    static T* create(CMNodes* nodes, const CMPath& path, Browser* browser)
    {
        auto* node = new T(path, browser);
        node->setNodes(nodes);
        return node;
    }

protected:
    // The rows a request asks for out of count: from..to within 0..count-1,
    // false when there are none.
    static bool pageBounds(const CMGetRowsRequest& request, int count, int* from, int* to);
    // Answers request with the rows of page (the roles the request names) and count.
    void answer(const CMGetRowsRequest& request, const QString& title, const QList<VexaRoles>& page, int count);

    Browser* m_browser;
};
