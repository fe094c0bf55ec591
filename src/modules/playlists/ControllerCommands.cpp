// The synchronous commands on playlists and collections: each checks its
// parameters in a fixed order, changes the model and leaves the answer's text in msg.
#include "Controller.h"

#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "Language.h"
#include "VexaPlayListClAddRemoveItem.h"
#include "VexaPlayListClCreate.h"
#include "VexaPlayListClId.h"
#include "VexaPlayListPlCreate.h"
#include "VexaPlayListPlId.h"
#include "VexaPlayListPlMoveItems.h"
#include "VexaPlayListPlRemoveItems.h"
#include "VexaPlayListPlRepeatMode.h"
#include "VexaPlayListPlSetName.h"
#include "VexaPlayListPlSetRepeat.h"
#include "VexaPlayListPlSetShuffle.h"
#include "VexaPlayListPlShuffleMode.h"

namespace {

const log4cplus::Logger& logger()
{
    return PlayListsLog::logger();
}

QVariantHash valueHash(const CMSetDataRequest& request)
{
    return request.value().toHash();
}

// The target of each step of PlayListBase::moveItems, which pairs the first
// index with the target when moving towards the front and the last index
// with it otherwise.
QList<int> moveTargets(const QList<int>& indices, int to)
{
    QList<int> targets;
    const int n = indices.size();
    for (int k = 0; k < n; ++k)
        targets.append(indices.first() > to ? to + k : to - k);
    return targets;
}

} // namespace

bool Controller::plCreate(CMSetDataRequest request, QString& msg, int& uid)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not create playlist.");
    const QString name = VexaPlayListPlCreate(valueHash(request)).name();
    if (!checkNonemptyString(name, QStringLiteral("name"), prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot create playlist with empty name");
        return false;
    }
    PlayListBase* playlist = m_manager->createPlayList(name);
    if (!playlist) {
        msg = buildErrMsg(prefix, VEXA_TR("Create playlist error."), QString());
        LOG4CPLUS_ERROR(logger(), "Create playlist failed");
        return false;
    }
    uid = playlist->getUid();
    emit playlistCreated(uid);
    LOG4CPLUS_INFO(logger(), "Playlist id: " << uid << ", name: " << name << " created successfully");
    msg = buildOkMsg(VEXA_TR("Playlist created successfully."), name, QString());
    return true;
}

bool Controller::clCreate(CMSetDataRequest request, QString& msg, int& uid)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not create collection.");
    const QString name = VexaPlayListClCreate(valueHash(request)).name();
    if (!checkNonemptyString(name, QStringLiteral("name"), prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot create collection with empty name");
        return false;
    }
    CollectionBase* collection = m_manager->createCollection(name);
    if (!collection) {
        msg = buildErrMsg(prefix, VEXA_TR("Create collection error."), QString());
        LOG4CPLUS_ERROR(logger(), "Create collection error");
        return false;
    }
    uid = collection->getUid();
    LOG4CPLUS_INFO(logger(), "Collection id: " << uid << ", name: " << name << " created successfully");
    msg = buildOkMsg(VEXA_TR("Collection created successfully."), name, QString());
    return true;
}

bool Controller::clDelete(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not delete collection.");
    const int clid = VexaPlayListClId(valueHash(request)).clid();
    CollectionBase* collection = m_manager->getCollectionByUid(clid);
    if (!collection) {
        msg = buildErrMsg(prefix, VEXA_TR("There is no collection with this ID."), QString::number(clid));
        LOG4CPLUS_ERROR(logger(), "Unable to find collection id: " << clid);
        return false;
    }
    const QString name = collection->getName();
    if (!m_manager->deleteCollection(collection)) {
        msg = buildErrMsg(prefix, VEXA_TR("Delete collection failed"), QString());
        LOG4CPLUS_ERROR(logger(), "Unable to delete collection id: " << clid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Collection id: " << clid << " deleted successfully");
    msg = buildOkMsg(VEXA_TR("Collection deleted successfully."), name, QString());
    return true;
}

bool Controller::plSetName(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not set playlist name.");
    const VexaPlayListPlSetName record(valueHash(request));
    const int plid = record.plid();
    const QString name = record.name();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot rename playlist id: " << plid);
        return false;
    }
    if (plid == 0) {
        msg = buildErrMsg(prefix, VEXA_TR("Cannot rename PlayQueue."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot rename playqueue");
        return false;
    }
    if (!checkNonemptyString(name, QStringLiteral("name"), prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot rename playlist id:" << plid << " to empty string");
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    playlist->setName(name);
    LOG4CPLUS_INFO(logger(), "Playlist id:" << plid << " successfully renamed to: " << name);
    msg = buildOkMsg(VEXA_TR("Playlist renamed successfully."), name, QString());
    return true;
}
bool Controller::plSetShuffle(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const VexaPlayListPlSetShuffle record(valueHash(request));
    const ModeCommand command{VEXA_TR("Could not set shuffle mode on playlist."),
                              VEXA_TR("Invalid shuffle mode."),
                              QStringLiteral("shuffle-mode"),
                              VEXA_TR("Playlist shuffle mode changed successfully."),
                              "Cannot set shuffle for invalid playlist id: ",
                              "Cannot set shuffle mode: ",
                              " set shuffle: ",
                              VexaPlayListPlShuffleMode::On,
                              [](PlayListBase* playlist, int mode) { playlist->setShuffle(mode == VexaPlayListPlShuffleMode::On); }};
    // A mode that names no shuffle mode at all reads as -1 and is refused like one above 1.
    return setPlayListMode(command, record.plid(), VexaPlayListPlShuffleMode::fromVariant(record.mode()), msg);
}

bool Controller::plSetRepeat(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const VexaPlayListPlSetRepeat record(valueHash(request));
    const ModeCommand command{VEXA_TR("Could not set repeat mode on playlist."),
                              VEXA_TR("Invalid repeat mode."),
                              QStringLiteral("repeat-mode"),
                              VEXA_TR("Playlist repeat mode changed successfully."),
                              "Cannot set repeat for invalid playlist id: ",
                              "Cannot set repeat mode: ",
                              " set repeat all: ",
                              VexaPlayListPlRepeatMode::OneAndAll,
                              [](PlayListBase* playlist, int mode) { playlist->setRepeatAll(mode == VexaPlayListPlRepeatMode::All); }};
    return setPlayListMode(command, record.plid(), VexaPlayListPlRepeatMode::fromVariant(record.mode()), msg);
}

bool Controller::setPlayListMode(const ModeCommand& command, int plid, int mode, QString& msg)
{
    if (!checkPlayListId(plid, command.prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), command.invalidIdLog << plid);
        return false;
    }
    if (mode > command.lastMode || mode < 0) {
        msg = buildErrMsg(command.prefix, command.invalidMode, command.invalidModeField);
        LOG4CPLUS_ERROR(logger(), command.invalidModeLog << mode);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, command.prefix, msg);
    if (!playlist)
        return false;
    command.apply(playlist, mode);
    LOG4CPLUS_INFO(logger(), "Playlist id:" << plid << command.doneLog << mode);
    msg = buildOkMsg(command.done, playlist->getName(), QString());
    return true;
}

bool Controller::plDelete(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not delete playlist.");
    const int plid = VexaPlayListPlId(valueHash(request)).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot delete invalid playlist id: " << plid);
        return false;
    }
    if (plid == 0) {
        msg = buildErrMsg(prefix, VEXA_TR("Cannot delete PlayQueue."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot delete playqueue");
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    const QString name = playlist->getName();
    if (!m_manager->deletePlayList(playlist)) {
        msg = buildErrMsg(prefix, VEXA_TR("Delete playlist error."), QString());
        LOG4CPLUS_ERROR(logger(), "Delete playlist id: " << plid << " failed");
        return false;
    }
    emit playlistDeleted(plid);
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " deleted successfully");
    msg = buildOkMsg(VEXA_TR("Playlist deleted successfully."), name, QString());
    return true;
}

bool Controller::clAddItem(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const MemberCommand command{VEXA_TR("Could not add items to collection."),
                                VEXA_TR("Add playlist to collection failed."),
                                VEXA_TR("Items added successfully to collection."),
                                "Unable to add playList to collection, playlist id: ",
                                "Unable to add playList id: ",
                                " to collection id: ",
                                " added to collection id: ",
                                [](CollectionBase* collection, PlayListBase* playlist) { return collection->addPlayList(playlist); }};
    return changeCollectionMember(command, request, msg);
}

bool Controller::clRemoveItem(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const MemberCommand command{
        VEXA_TR("Could not remove items from collection."),
        VEXA_TR("Remove playlist from collection failed."),
        VEXA_TR("Playlist removed successfully from collection."),
        "Unable to remove playList from collection, playlist id: ",
        "Unable to remove playList, id: ",
        " from collection id: ",
        " removed from collection id: ",
        [](CollectionBase* collection, PlayListBase* playlist) { return collection->removePlayList(playlist); }};
    return changeCollectionMember(command, request, msg);
}

bool Controller::changeCollectionMember(const MemberCommand& command, const CMSetDataRequest& request, QString& msg)
{
    const VexaPlayListClAddRemoveItem record(valueHash(request));
    const int plid = record.plid();
    const int clid = record.clid();
    if (!checkPlayListId(plid, command.prefix, msg))
        return false;
    CollectionBase* collection = m_manager->getCollectionByUid(clid);
    if (!collection) {
        msg = buildErrMsg(command.prefix, VEXA_TR("There is no collection with this ID."), QString::number(clid));
        LOG4CPLUS_ERROR(logger(), "Collection id: " << clid << "doesn't exist");
        return false;
    }
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!checkPlayList(playlist, plid, command.prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), command.missingPlayListLog << plid << " doesn't exist");
        return false;
    }
    if (!command.apply(collection, playlist)) {
        msg = buildErrMsg(command.prefix, command.failed, QString());
        LOG4CPLUS_ERROR(logger(), command.failedLog << plid << command.failedLogCollection << clid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << command.doneLog << clid);
    msg = buildOkMsg(command.done, collection->getName(), QString());
    return true;
}

bool Controller::plClearItems(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not clear playlist.");
    const int plid = VexaPlayListPlId(valueHash(request)).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot clear items from invalid playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    if (!playlist->clearItems()) {
        msg = buildErrMsg(prefix, VEXA_TR("Clear playlist failed."), QString());
        LOG4CPLUS_ERROR(logger(), "Clear playlist id: " << plid << " failed");
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " cleared successfully");
    msg = buildOkMsg(VEXA_TR("Playlist cleared successfully."), playlist->getName(), QString());
    return true;
}

bool Controller::plMoveItems(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not move items in playlist.");
    const VexaPlayListPlMoveItems record(valueHash(request));
    const int plid = record.plid();
    const QList<int> items = record.items();
    const int to = record.to();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot move items in invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, VEXA_TR("Please select one or more items to move."), QString());
        LOG4CPLUS_ERROR(logger(), "Please select one or more items to move in playlist id: " << plid);
        return false;
    }
    if (to < 0) {
        msg = buildErrMsg(prefix, VEXA_TR("Cannot move items to negative position."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot move items to negative position in playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    // The playlist clamps what it is given, but a position or a paired target
    // outside the list would leave a gap in its numbering: such a request is
    // refused before anything moves.
    const int count = playlist->getSize();
    bool inRange = to < count;
    const QList<int> targets = moveTargets(items, to);
    for (int k = 0; inRange && k < items.size(); ++k)
        inRange = items.at(k) >= 0 && items.at(k) < count && targets.at(k) >= 0 && targets.at(k) < count;
    if (!inRange) {
        msg = buildErrMsg(prefix, VEXA_TR("Cannot move items, sequence number is not in valid range."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot move items, sequence number is not in valid range");
        return false;
    }
    LOG4CPLUS_TRACE(logger(), "indicies: " << items << " toSeqNum " << to);
    if (!playlist->moveItems(items, to)) {
        msg = buildErrMsg(prefix, VEXA_TR("Move items failed"), QString());
        QString list;
        for (int item : items)
            list += QStringLiteral("%1,").arg(item);
        LOG4CPLUS_ERROR(logger(), "Unable to move items (" << list << ") to seqnum " << to << " in playlist id: " << plid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Items in playlist id: " << plid << " moved successfully to position: " << to);
    msg = buildOkMsg(VEXA_TR("Items removed successfully from playlist."), playlist->getName(), QString());
    return true;
}

bool Controller::plRemoveItems(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not remove items from playlist.");
    const VexaPlayListPlRemoveItems record(valueHash(request));
    const int plid = record.plid();
    const QList<int> items = record.items();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot delete items from invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, VEXA_TR("Please select one or more items to remove."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot delete zero items from playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    const int removed = playlist->removeItems(items);
    LOG4CPLUS_TRACE(logger(), "numItemsChanged " << removed);
    if (removed <= 0) {
        msg = buildErrMsg(prefix, VEXA_TR("Remove items failed"), QString());
        LOG4CPLUS_ERROR(logger(), "Remove items from playlist id: " << plid << " failed");
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Removed " << removed << " items from playlist id: " << plid);
    msg = buildOkMsg(VEXA_TR("Items removed successfully from playlist."), QString::number(removed), QString());
    return true;
}
