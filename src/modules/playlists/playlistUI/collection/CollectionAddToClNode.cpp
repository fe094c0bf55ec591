#include "playlistUI/collection/CollectionAddToClNode.h"

#include "PlayListsVocabulary.h"

#include "CollectionBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListClAddRemoveItem.h"
#include "VexaPlayListClCreate.h"

CollectionAddToClNode* CollectionAddToClNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<CollectionAddToClNode>(nodes, path, manager);
}

bool CollectionAddToClNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    LOG4CPLUS_TRACE(logger, "path: " << request.path());
    CMPath base = path();
    base.setParams(request.path().params());
    QVariantList rows;
    appendRow(rows, request,
              inputRow(VEXA_TR("Create new collection"), base.withParam(Param::Action, QStringLiteral("createCl")),
                       stringValue(QString())));
    appendRow(rows, request, separatorRow());
    if (m_manager) {
        for (CollectionBase* collection : m_manager->getAllCollection()) {
            LOG4CPLUS_TRACE(logger, "clid: " << collection->getUid());
            appendRow(rows, request,
                      row(collection->getName(),
                          base.withParam(Param::Action, QStringLiteral("addItem"))
                              .withParam(Param::Clid, toStr(collection->getUid())),
                          VexaRolesType::Action));
        }
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Add playlist to collection"),
                  createRolesFromPath(request.path(), request.roleNames()), request, true);
    return true;
}

bool CollectionAddToClNode::setDataRequest(const CMSetDataRequest& request)
{
    const QString action = request.path().param(Param::Action);
    if (action == QLatin1String("createCl")) {
        VexaPlayListClCreate record;
        record.setName(VexaValue(request.value().toHash()).string_());
        invokeCommand(VexaPlayListClCreatePath(), record, request);
        return true;
    }
    if (action == QLatin1String("addItem")) {
        VexaPlayListClAddRemoveItem record;
        record.setPlid(toInt(request.path().param(Param::Plid), -1));
        record.setClid(toInt(request.path().param(Param::Clid), -1));
        invokeCommand(VexaPlayListClAddItemPath(), record, request);
        return true;
    }
    return false;
}

void CollectionAddToClNode::watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request)
{
    passReply(reply, request, request.path().param(Param::Action) == QLatin1String("addItem"));
}
