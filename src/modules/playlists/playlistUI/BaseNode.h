#pragma once

#include "CMListRowsNode.h"
#include "CMNodes.h"
#include "Language.h"
#include "VexaEvent.h"
#include "VexaRoles.h"

#include <QStringList>

#include <initializer_list>
#include <QVariantList>

class PlayListManager;

// The base of every node of the module's browse tree: it reads the model,
// answers rows requests page by page and builds the parts rows share.
class BaseNode : public CMListRowsNode
{
public:
    // Reads the visibility settings of the play queue and of collections:
    // a later change reaches only nodes built after it.
    BaseNode(const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;

    // Answers request with rows (paged by the request's rows when sliceByRequest).
    void sendRowsReply(const QVariantList& rows, int rowsCount, const QString& title, const VexaRoles& roles,
                       CMGetRowsRequest request, bool sliceByRequest);
    // The track roles with the track context menu of playlist plid attached.
    VexaRoles addContextMenuToRoles(VexaRoles roles, int plid);
    // The event that tells a client to close the menu at this node's path.
    VexaEvent genClosePathEvent();
    // This node's own roles for a request path: the header of a menu.
    VexaRoles createRolesFromPath(const CMPath& path, const QStringList& roleNames);

    static int toInt(const QString& s, int defaultValue);
    static QString toStr(const int& v);

protected:
    // Pieces of rows that several lists and menus share.
    static VexaRoles contextMenuRoles(const QString& title, const CMPath& path);
    static VexaRoles row(const QString& title, const CMPath& path, VexaRolesType::Enum type);
    static VexaRoles inputRow(const QString& title, const CMPath& path, const VexaValue& value);
    static VexaRoles separatorRow();
    static VexaValue stringValue(const QString& text);
    static VexaValue boolValue(bool value);
    static void appendRow(QVariantList& rows, const CMGetRowsRequest& request, const VexaRoles& roles);
    // This node's path with name=value parameters added in order.
    CMPath ownPath(std::initializer_list<CMPath::Param> params) const;

    // Invokes a command of the module with record; its answer goes to
    // watchReplyFinished on the worker's thread.
    void invokeCommand(const CMPath& command, const VexaHash& record, const CMSetDataRequest& request);
    // Answers the client's request with the command's answer: an error
    // unchanged; on success the value, by default with this menu's close event.
    virtual void watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request);
    // The answer itself, with or without the close event.
    void passReply(const CMReply<QVariant>& reply, const CMSetDataRequest& request, bool close);

    // Builds a context menu of class T at path, registered in nodes.
    template <class T>
    static T* createMenu(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
    {
        T* node = createNode<T>(nodes, path, manager);
        node->setContainerType(VexaRolesContainerType::ContextMenu);
        return node;
    }

    // Builds a node of class T at path, registered in nodes.
    template <class T>
    static T* createNode(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
    {
        auto* node = new T(path, manager);
        node->setNodes(nodes);
        return node;
    }

    PlayListManager* m_manager;
    bool m_playqueueVisible;
    bool m_collectionsVisible;
};
