#include "playlistUI/playlist/PlayListContextNode.h"

#include "PlayListsVocabulary.h"

#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPaths.h"
#include "VexaPlayListClAddRemoveItem.h"
#include "VexaPlayListPlId.h"
#include "VexaPlayListPlRepeatMode.h"
#include "VexaPlayListPlSetName.h"
#include "VexaPlayListPlSetRepeat.h"
#include "VexaPlayListPlSetShuffle.h"

namespace {


// A toggle row's mode: the value sent, else the inverse held by the row's path.
QVariant toggleMode(const CMSetDataRequest& request)
{
    const VexaValue value(request.value().toHash());
    if (value.contains(VexaValue::Bool_()))
        return int(value.bool_());
    return BaseNode::toInt(request.path().param(Param::Mode), -1);
}

} // namespace

PlayListContextNode* PlayListContextNode::create(CMNodes* nodes, const CMPath& path, PlayListManager* manager)
{
    return createMenu<PlayListContextNode>(nodes, path, manager);
}

bool PlayListContextNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    const QString plid = request.path().param(Param::Plid);
    const QString clid = request.path().param(Param::Clid);
    LOG4CPLUS_TRACE(logger, "plid: " << plid);
    LOG4CPLUS_TRACE(logger, "clid: " << clid);
    PlayListBase* playlist = m_manager ? m_manager->getPlayListByUid(toInt(plid, -1)) : nullptr;
    const QString title = VEXA_TR("Playlist Context Menu") + QStringLiteral(" - ") + (playlist ? playlist->getName() : QString());
    QVariantList rows;
    if (playlist) {
        appendRow(rows, request, row(VEXA_TR("Play"), ownPath({{Param::Action, QStringLiteral("play")}, {Param::Plid, plid}}),
                                     VexaRolesType::Action));
        appendRow(rows, request, inputRow(VEXA_TR("Rename"), ownPath({{Param::Action, QStringLiteral("rename")}, {Param::Plid, plid}}),
                                          stringValue(playlist->getName())));
        appendRow(rows, request,
                  inputRow(VEXA_TR("Set shuffle mode"),
                           ownPath({{Param::Action, QStringLiteral("shuffle")}, {Param::Plid, plid}, {Param::Mode, toStr(!playlist->getShuffle())}}),
                           boolValue(playlist->getShuffle())));
        appendRow(rows, request,
                  inputRow(VEXA_TR("Set repeat mode"),
                           ownPath({{Param::Action, QStringLiteral("repeat")}, {Param::Plid, plid}, {Param::Mode, toStr(!playlist->getRepeatAll())}}),
                           boolValue(playlist->getRepeatAll())));
        // The merge source travels as "fromplid" through the choosers to the add command.
        appendRow(rows, request,
                  row(VEXA_TR("Merge with playlist"),
                      VexaPlayListPlAddToPlaylistPath()
                          .withParam(Param::Action, QStringLiteral("cmnode"))
                          .withParam(Param::FromPlid, plid),
                      VexaRolesType::Container));
        appendRow(rows, request,
                  row(VEXA_TR("Add to collection"),
                      VexaPlayListClAddtoCollectionPath().withParam(Param::Action, QStringLiteral("cmnode")).withParam(Param::Plid, plid),
                      VexaRolesType::Container));
        CollectionBase* collection =
            request.path().hasParam(Param::Clid) ? m_manager->getCollectionByUid(clid.toInt()) : nullptr;
        if (collection) {
            appendRow(rows, request,
                      row(VEXA_TR("Remove from collection") + QStringLiteral(" - ") + collection->getName(),
                          ownPath({{Param::Action, QStringLiteral("delFromCl")}, {Param::Plid, plid}, {Param::Clid, clid}}),
                          VexaRolesType::Action));
        }
        appendRow(rows, request, separatorRow());
        appendRow(rows, request, row(VEXA_TR("Clear playlist"),
                                     ownPath({{Param::Action, QStringLiteral("clearPl")}, {Param::Plid, plid}}), VexaRolesType::Action));
        appendRow(rows, request, row(VEXA_TR("Delete playlist"),
                                     ownPath({{Param::Action, QStringLiteral("delPL")}, {Param::Plid, plid}}), VexaRolesType::Action));
    }
    sendRowsReply(rows, rows.size(), title, createRolesFromPath(request.path(), request.roleNames()), request, true);
    return true;
}

bool PlayListContextNode::setDataRequest(const CMSetDataRequest& request)
{
    const QString action = request.path().param(Param::Action);
    const int plid = toInt(request.path().param(Param::Plid), -1);
    if (action == QLatin1String("play") || action == QLatin1String("clearPl") || action == QLatin1String("delPL")) {
        VexaPlayListPlId record;
        record.setPlid(plid);
        const CMPath command = action == QLatin1String("play")    ? VexaPlayListPlPlayPath()
                             : action == QLatin1String("clearPl") ? VexaPlayListPlClearPath()
                                                                  : VexaPlayListPlDeletePath();
        invokeCommand(command, record, request);
    } else if (action == QLatin1String("rename")) {
        VexaPlayListPlSetName record;
        record.setPlid(plid);
        const VexaValue value(request.value().toHash());
        if (value.contains(VexaValue::String_()))
            record.setName(value.string_());
        invokeCommand(VexaPlayListPlSetNamePath(), record, request);
    } else if (action == QLatin1String("shuffle")) {
        VexaPlayListPlSetShuffle record;
        record.setPlid(plid);
        record.setMode(toggleMode(request));
        invokeCommand(VexaPlayListPlSetShufflePath(), record, request);
    } else if (action == QLatin1String("repeat")) {
        VexaPlayListPlSetRepeat record;
        record.setPlid(plid);
        // The row switches repeat-all on and off, but the command's mode 1 is
        // repeat-one, which leaves repeat-all off: "on" goes out as repeat-all.
        const QVariant mode = toggleMode(request);
        record.setMode(mode.toInt() == 1 ? QVariant(int(VexaPlayListPlRepeatMode::All)) : mode);
        invokeCommand(VexaPlayListPlSetRepeatPath(), record, request);
    } else if (action == QLatin1String("delFromCl")) {
        VexaPlayListClAddRemoveItem record;
        record.setPlid(plid);
        record.setClid(toInt(request.path().param(Param::Clid), -1));
        invokeCommand(VexaPlayListClRemoveItemPath(), record, request);
    } else {
        return false;
    }
    return true;
}

void PlayListContextNode::watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request)
{
    const QString action = request.path().param(Param::Action);
    const bool staysOpen = action == QLatin1String("shuffle") || action == QLatin1String("repeat")
        || action == QLatin1String("rename");
    passReply(reply, request, !staysOpen);
}
