#include "playlistUI/RootNode.h"

#include "PlayListsVocabulary.h"

#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "CMRootWorker.h"
#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListClCreate.h"
#include "VexaPlayListPlCreate.h"

RootNode* RootNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createNode<RootNode>(nodes, path, manager);
}

bool RootNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "request=" << request.index());
    LOG4CPLUS_TRACE(logger, "path: " << request.path());
    LOG4CPLUS_TRACE(logger, "fromRow: " << request.fromRow());
    LOG4CPLUS_TRACE(logger, "toRow: " << request.toRow());
    QVariantList rows;
    if (m_manager) {
        if (m_playqueueVisible) {
            PlayListBase* queue = m_manager->getPlayQueue();
            LOG4CPLUS_TRACE(logger, "pqname: " << queue->getName());
            LOG4CPLUS_TRACE(logger, "pqid: " << queue->getUid());
            VexaRoles roles = row(queue->getName(), itemsPathOf(queue->getUid()), VexaRolesType::Container);
            roles.setContainerPlayable(true);
            roles.setMediaData(playLogicMediaData());
            roles.setContext(contextMenuRoles(
                queue->getName(), VexaPlayListPqContextPath().withParam(Param::Plid, toStr(queue->getUid()))));
            appendRow(rows, request, roles);
        }
        appendRow(rows, request, row(Language::ntr("PlayLists", "Playlists"), CMPath(), VexaRolesType::Header));
        appendRow(rows, request,
                  inputRow(VEXA_TR("Create New Playlist"),
                           ownPath({{Param::Action, QStringLiteral("createPl")}}), stringValue(QString())));
        for (PlayListBase* playlist : m_manager->getAllPlayList()) {
            LOG4CPLUS_TRACE(logger, "plname: " << playlist->getName());
            LOG4CPLUS_TRACE(logger, "plid: " << playlist->getUid());
            VexaRoles roles = row(playlist->getName(), itemsPathOf(playlist->getUid()),
                                  VexaRolesType::Container);
            roles.setContainerPlayable(true);
            roles.setMediaData(playLogicMediaData());
            roles.setContext(contextMenuRoles(
                VEXA_TR("Playlist Context Menu") + QStringLiteral(" - ") + playlist->getName(),
                VexaPlayListPlContextPath().withParam(Param::Plid, toStr(playlist->getUid()))));
            appendRow(rows, request, roles);
        }
        if (m_collectionsVisible) {
            appendRow(rows, request, row(Language::ntr("PlayLists", "Collections"), CMPath(), VexaRolesType::Header));
            appendRow(rows, request,
                      inputRow(VEXA_TR("Create New Collection"),
                               ownPath({{Param::Action, QStringLiteral("createCl")}}), stringValue(QString())));
            for (CollectionBase* collection : m_manager->getAllCollection()) {
                LOG4CPLUS_TRACE(logger, "clname: " << collection->getName());
                LOG4CPLUS_TRACE(logger, "clid: " << collection->getUid());
                VexaRoles roles = row(collection->getName(),
                                      VexaPlayListClGetItemsPath().withParam(Param::Clid, toStr(collection->getUid())),
                                      VexaRolesType::Container);
                roles.setContainerPlayable(true);
                roles.setContext(contextMenuRoles(
                    VEXA_TR("Collection Context Menu") + QStringLiteral(" - ") + collection->getName(),
                    VexaPlayListClContextPath().withParam(Param::Clid, toStr(collection->getUid()))));
                appendRow(rows, request, roles);
            }
        }
    }
    sendRowsReply(rows, rows.size(), VEXA_TR("Playlists"), createRolesFromPath(request.path(), request.roleNames()),
                  request, true);
    return true;
}

bool RootNode::setDataRequest(const CMSetDataRequest& request)
{
    const VexaValue value(request.value().toHash());
    const QString action = request.path().param(Param::Action);
    if (action == QLatin1String("createPl")) {
        VexaPlayListPlCreate record;
        if (value.contains(VexaValue::String_()))
            record.setName(value.string_());
        // The command answers the client directly, through the client's own reply.
        CMRoot()->invoke(VexaPlayListPlCreatePath(), record.toVariant(), request.reply());
        return true;
    }
    if (action == QLatin1String("createCl")) {
        VexaPlayListClCreate record;
        if (value.contains(VexaValue::String_()))
            record.setName(value.string_());
        CMRoot()->invoke(VexaPlayListClCreatePath(), record.toVariant(), request.reply());
        return true;
    }
    return false;
}
