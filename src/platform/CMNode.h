#pragma once

#include "CMGetRowsRequest.h"
#include "CMPath.h"
#include "CMSetDataRequest.h"
#include "VexaRoles.h"

class CMNodes;

// A node of the content-model tree: something at a path that answers rows,
// data and set-data requests. Nodes are used on their worker's thread only.
class VEXA_API CMNode
{
public:
    explicit CMNode(const CMPath& path);
    virtual ~CMNode();

    CMNode(const CMNode&) = delete;
    CMNode& operator=(const CMNode&) = delete;

    const CMPath& path() const { return m_path; }

    // Registers the node in nodes, under its path without parameters.
    void setNodes(CMNodes* nodes);
    CMNodes* nodes() const { return m_nodes; }

    // Answers a rows request through its reply; false when the node has no rows.
    virtual bool getRowsRequest(const CMGetRowsRequest& request);
    // Carries out a set-data request; false when the node does not take it.
    virtual bool setDataRequest(const CMSetDataRequest& request);
    // The node's own roles, restricted to roleNames ("*" for all of them).
    virtual VexaRoles getDataRoles(const QStringList& roleNames, const CMPath::Params& params) const;

    // Takes the node out of its registry and frees it.
    virtual void release();

private:
    CMPath m_path;
    CMNodes* m_nodes = nullptr;
};
