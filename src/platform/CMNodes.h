#pragma once

#include "CMPath.h"

#include <QHash>
#include <QMutex>

class CMNode;

// The registry of one worker's nodes, by prefix and path. Parameters are not
// part of the key: a request on "p:/menu?plid=3" reaches the node at "p:/menu".
class VEXA_API CMNodes
{
public:
    CMNode* find(const CMPath& path) const;

    // A later node at the same path replaces the earlier one.
    void registerNode(CMNode* node);
    // Removes node, if it is the one registered at its path.
    void unregisterNode(CMNode* node);

private:
    mutable QMutex m_mutex;
    QHash<QString, CMNode*> m_nodes;
};
