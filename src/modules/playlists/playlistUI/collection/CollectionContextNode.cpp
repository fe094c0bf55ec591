#include "playlistUI/collection/CollectionContextNode.h"

#include "PlayListsVocabulary.h"

#include "CollectionBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListClId.h"

CollectionContextNode* CollectionContextNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<CollectionContextNode>(nodes, path, manager);
}

bool CollectionContextNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const QString clid = request.path().param(Param::Clid);
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "clid: " << clid);
    CollectionBase* collection = m_manager ? m_manager->getCollectionByUid(toInt(clid, -1)) : nullptr;
    QVariantList rows;
    appendRow(rows, request,
              row(VEXA_TR("Delete collection"),
                  ownPath({{Param::Action, QStringLiteral("delete")}, {Param::Clid, clid}}),
                  VexaRolesType::Action));
    sendRowsReply(rows, rows.size(),
                  VEXA_TR("Collection Context Menu") + QStringLiteral(" - ") + (collection ? collection->getName() : QString()),
                  createRolesFromPath(request.path(), request.roleNames()), request, true);
    return true;
}

bool CollectionContextNode::setDataRequest(const CMSetDataRequest& request)
{
    if (request.path().param(Param::Action) != QLatin1String("delete"))
        return false;
    VexaPlayListClId record;
    record.setClid(toInt(request.path().param(Param::Clid), -1));
    invokeCommand(VexaPlayListClDeletePath(), record, request);
    return true;
}
