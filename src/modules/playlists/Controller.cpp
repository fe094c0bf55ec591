#include "Controller.h"

#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "CMError.h"
#include "CMRequestGroup.h"
#include "Language.h"
#include "VexaActionReply.h"
#include "VexaPaths.h"
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
#include "VexaJson.h"
#include "VexaPlayListPlAddExternalItems.h"
#include "VexaPlayListPlAddItems.h"
#include "PlayLogicInterface.h"

// A user text in the translation context of the calling member (its class).
#define CONTROLLER_TR(text) Language::ntr(trExtractContext(__PRETTY_FUNCTION__), QStringLiteral(text))

namespace {

const log4cplus::Logger& logger()
{
    return PlayListsLog::logger();
}

const char* boolText(bool value)
{
    return value ? "true" : "false";
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

// The add position of a command's "mode": append when it has none.
VexaPlayListAddPosition::Enum readPosition(const QVariant& mode)
{
    if (!mode.isValid() || mode.isNull())
        return VexaPlayListAddPosition::Append;
    // The store decides what a position means (every one appends to an
    // empty playlist); a name that is no position is a value it does not know.
    bool ok = false;
    const VexaPlayListAddPosition::Enum position = VexaPlayListAddPosition::fromVariant(mode, &ok);
    return ok ? position : VexaPlayListAddPosition::Enum(-1);
}

} // namespace

Controller::Controller(PlayListWorker* worker, PlayListManager* manager)
    : QObject(nullptr), m_worker(worker), m_manager(manager)
{
}

bool Controller::handleSetData(const CMSetDataRequest& request)
{
    PLAYLISTS_LOG_ENTER(logger(), "routing " << request.path() << ", value: " << request.value());
    const CMPath& path = request.path();
    QString msg;
    int uid = -1;
    if (path == VexaPlayListPlPrepareItemsPath())
        plPrepareItems(request);
    else if (path == VexaPlayListPlPlayPath())
        setReply(request, plPlay(request, msg), msg);
    else if (path == VexaPlayListPlCreatePath())
        replyCreated(request, plCreate(request, msg, uid), uid, msg);
    else if (path == VexaPlayListPlClearPath())
        setReply(request, plClearItems(request, msg), msg);
    else if (path == VexaPlayListPlSetNamePath())
        setReply(request, plSetName(request, msg), msg);
    else if (path == VexaPlayListPlSetShufflePath())
        setReply(request, plSetShuffle(request, msg), msg);
    else if (path == VexaPlayListPlSetRepeatPath())
        setReply(request, plSetRepeat(request, msg), msg);
    else if (path == VexaPlayListPlDeletePath())
        setReply(request, plDelete(request, msg), msg);
    else if (path == VexaPlayListPlRemoveItemsPath())
        setReply(request, plRemoveItems(request, msg), msg);
    else if (path == VexaPlayListPlAddItemsPath())
        plAddItems(request);
    else if (path == VexaPlayListPlAddExternalItemsPath())
        setReply(request, plAddExternalItems(request, msg), msg);
    else if (path == VexaPlayListPlMoveItemspath())
        setReply(request, plMoveItems(request, msg), msg);
    else if (path == VexaPlayListClCreatePath())
        replyCreated(request, clCreate(request, msg, uid), uid, msg);
    else if (path == VexaPlayListClAddItemPath())
        setReply(request, clAddItem(request, msg), msg);
    else if (path == VexaPlayListClRemoveItemPath())
        setReply(request, clRemoveItem(request, msg), msg);
    else if (path == VexaPlayListClDeletePath())
        setReply(request, clDelete(request, msg), msg);
    else
        return false;
    return true;
}

void Controller::replyCreated(const CMSetDataRequest& request, bool ok, const int& uid, const QString& msg)
{
    // uid arrives by reference: it is read only now, after the handler that sets it ran.
    setReplyInt(request, ok, uid, msg);
}

void Controller::setReply(const CMSetDataRequest& request, bool ok, const QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "res: " << boolText(ok) << " msg: " << msg);
    if (ok) {
        VexaValue value;
        value.setBool_(true);
        VexaRoles result;
        result.setValue(value);
        VexaActionReply reply;
        reply.setXclass(QStringLiteral("VexaActionReply"));
        reply.setResult(result);
        request.reply().setData(reply.toVariant());
    } else {
        request.reply().setError(CMError(CMError::DefaultName(), CMError::DefaultTitle(), TrString(msg)));
    }
}

void Controller::setReplyInt(const CMSetDataRequest& request, bool ok, int value, const QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "res: " << boolText(ok) << " val: " << value << " msg: " << msg);
    if (ok) {
        VexaValue number;
        number.setI32_(value);
        VexaRoles result;
        result.setValue(number);
        VexaActionReply reply;
        reply.setXclass(QStringLiteral("VexaActionReply"));
        reply.setResult(result);
        request.reply().setData(reply.toVariant());
    } else {
        request.reply().setError(CMError(CMError::DefaultName(), CMError::DefaultTitle(), TrString(msg)));
    }
}

QString Controller::buildErrMsg(const QString& a, const QString& b, const QString& c)
{
    if (!c.isEmpty())
        return QStringLiteral("%1 %2 (%3)").arg(a, b, c);
    return QStringLiteral("%1 %2").arg(a, b);
}

QString Controller::buildOkMsg(const QString& a, const QString& b, const QString& c)
{
    if (!c.isEmpty())
        return QStringLiteral("%1 %2 (%3)").arg(a, b, c);
    return QStringLiteral("%1 (%2)").arg(a, b);
}

bool Controller::checkNonemptyString(const QString& value, const QString& field, const QString& prefix, QString& errMsg)
{
    if (!value.isEmpty())
        return true;
    errMsg = buildErrMsg(prefix, CONTROLLER_TR("Please provide a non-empty string as field."), field);
    return false;
}

bool Controller::checkPlayList(const PlayListBase* pl, const int& plid, const QString& prefix, QString& errMsg)
{
    if (pl)
        return true;
    errMsg = buildErrMsg(prefix, CONTROLLER_TR("There is no playlist with this ID."), QString::number(plid));
    LOG4CPLUS_ERROR(logger(), "There is no playlist with ID : " << plid);
    return false;
}

bool Controller::checkPlayListId(const int& plid, const QString& prefix, QString& errMsg)
{
    if (plid != -1)
        return true;
    errMsg = buildErrMsg(prefix, CONTROLLER_TR("Cannot find playlist with invalid ID."), QString::number(plid));
    LOG4CPLUS_ERROR(logger(), "Cannot find playlist with invalid ID : " << plid);
    return false;
}

PlayListBase* Controller::findPlayList(int plid, const QString& prefix, QString& msg)
{
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!checkPlayList(playlist, plid, prefix, msg))
        LOG4CPLUS_ERROR(logger(), "Playlist id: " << plid << " doesn't exist");
    return playlist;
}

bool Controller::plCreate(CMSetDataRequest request, QString& msg, int& uid)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not create playlist.");
    const QString name = VexaPlayListPlCreate(valueHash(request)).name();
    if (!checkNonemptyString(name, QStringLiteral("name"), prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot create playlist with empty name");
        return false;
    }
    PlayListBase* playlist = m_manager->createPlayList(name);
    if (!playlist) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Create playlist error."), QString());
        LOG4CPLUS_ERROR(logger(), "Create playlist failed");
        return false;
    }
    uid = playlist->getUid();
    emit playlistCreated(uid);
    LOG4CPLUS_INFO(logger(), "Playlist id: " << uid << ", name: " << name << " created successfully");
    msg = buildOkMsg(CONTROLLER_TR("Playlist created successfully."), name, QString());
    return true;
}

bool Controller::clCreate(CMSetDataRequest request, QString& msg, int& uid)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not create collection.");
    const QString name = VexaPlayListClCreate(valueHash(request)).name();
    if (!checkNonemptyString(name, QStringLiteral("name"), prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot create collection with empty name");
        return false;
    }
    CollectionBase* collection = m_manager->createCollection(name);
    if (!collection) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Create collection error."), QString());
        LOG4CPLUS_ERROR(logger(), "Create collection error");
        return false;
    }
    uid = collection->getUid();
    LOG4CPLUS_INFO(logger(), "Collection id: " << uid << ", name: " << name << " created successfully");
    msg = buildOkMsg(CONTROLLER_TR("Collection created successfully."), name, QString());
    return true;
}

bool Controller::clDelete(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not delete collection.");
    const int clid = VexaPlayListClId(valueHash(request)).clid();
    CollectionBase* collection = m_manager->getCollectionByUid(clid);
    if (!collection) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("There is no collection with this ID."), QString::number(clid));
        LOG4CPLUS_ERROR(logger(), "Unable to find collection id: " << clid);
        return false;
    }
    const QString name = collection->getName();
    if (!m_manager->deleteCollection(collection)) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Delete collection failed"), QString());
        LOG4CPLUS_ERROR(logger(), "Unable to delete collection id: " << clid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Collection id: " << clid << " deleted successfully");
    msg = buildOkMsg(CONTROLLER_TR("Collection deleted successfully."), name, QString());
    return true;
}

bool Controller::plSetName(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not set playlist name.");
    const VexaPlayListPlSetName record(valueHash(request));
    const int plid = record.plid();
    const QString name = record.name();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot rename playlist id: " << plid);
        return false;
    }
    if (plid == 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot rename PlayQueue."), QString());
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
    msg = buildOkMsg(CONTROLLER_TR("Playlist renamed successfully."), name, QString());
    return true;
}

bool Controller::plSetShuffle(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not set shuffle mode on playlist.");
    const VexaPlayListPlSetShuffle record(valueHash(request));
    const int plid = record.plid();
    // A mode that names no shuffle mode at all reads as -1 and is refused like one above 1.
    const int mode = VexaPlayListPlShuffleMode::fromVariant(record.mode());
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot set shuffle for invalid playlist id: " << plid);
        return false;
    }
    if (mode > VexaPlayListPlShuffleMode::On || mode < 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Invalid shuffle mode."), QStringLiteral("shuffle-mode"));
        LOG4CPLUS_ERROR(logger(), "Cannot set shuffle mode: " << mode);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    playlist->setShuffle(mode == VexaPlayListPlShuffleMode::On);
    LOG4CPLUS_INFO(logger(), "Playlist id:" << plid << " set shuffle: " << mode);
    msg = buildOkMsg(CONTROLLER_TR("Playlist shuffle mode changed successfully."), playlist->getName(), QString());
    return true;
}

bool Controller::plSetRepeat(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not set repeat mode on playlist.");
    const VexaPlayListPlSetRepeat record(valueHash(request));
    const int plid = record.plid();
    const int mode = VexaPlayListPlRepeatMode::fromVariant(record.mode());
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot set repeat for invalid playlist id: " << plid);
        return false;
    }
    if (mode > VexaPlayListPlRepeatMode::OneAndAll || mode < 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Invalid repeat mode."), QStringLiteral("repeat-mode"));
        LOG4CPLUS_ERROR(logger(), "Cannot set repeat mode: " << mode);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    playlist->setRepeatAll(mode == VexaPlayListPlRepeatMode::All);
    LOG4CPLUS_INFO(logger(), "Playlist id:" << plid << " set repeat all: " << mode);
    msg = buildOkMsg(CONTROLLER_TR("Playlist repeat mode changed successfully."), playlist->getName(), QString());
    return true;
}

bool Controller::plDelete(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not delete playlist.");
    const int plid = VexaPlayListPlId(valueHash(request)).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot delete invalid playlist id: " << plid);
        return false;
    }
    if (plid == 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot delete PlayQueue."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot delete playqueue");
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    const QString name = playlist->getName();
    if (!m_manager->deletePlayList(playlist)) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Delete playlist error."), QString());
        LOG4CPLUS_ERROR(logger(), "Delete playlist id: " << plid << " failed");
        return false;
    }
    emit playlistDeleted(plid);
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " deleted successfully");
    msg = buildOkMsg(CONTROLLER_TR("Playlist deleted successfully."), name, QString());
    return true;
}

bool Controller::clAddItem(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not add items to collection.");
    const VexaPlayListClAddRemoveItem record(valueHash(request));
    const int plid = record.plid();
    const int clid = record.clid();
    if (!checkPlayListId(plid, prefix, msg))
        return false;
    CollectionBase* collection = m_manager->getCollectionByUid(clid);
    if (!collection) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("There is no collection with this ID."), QString::number(clid));
        LOG4CPLUS_ERROR(logger(), "Collection id: " << clid << "doesn't exist");
        return false;
    }
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!checkPlayList(playlist, plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Unable to add playList to collection, playlist id: " << plid << " doesn't exist");
        return false;
    }
    if (!collection->addPlayList(playlist)) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Add playlist to collection failed."), QString());
        LOG4CPLUS_ERROR(logger(), "Unable to add playList id: " << plid << " to collection id: " << clid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " added to collection id: " << clid);
    msg = buildOkMsg(CONTROLLER_TR("Items added successfully to collection."), collection->getName(), QString());
    return true;
}

bool Controller::clRemoveItem(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not remove items from collection.");
    const VexaPlayListClAddRemoveItem record(valueHash(request));
    const int plid = record.plid();
    const int clid = record.clid();
    if (!checkPlayListId(plid, prefix, msg))
        return false;
    CollectionBase* collection = m_manager->getCollectionByUid(clid);
    if (!collection) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("There is no collection with this ID."), QString::number(clid));
        LOG4CPLUS_ERROR(logger(), "Collection id: " << clid << "doesn't exist");
        return false;
    }
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!checkPlayList(playlist, plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(),
                        "Unable to remove playList from collection, playlist id: " << plid << " doesn't exist");
        return false;
    }
    if (!collection->removePlayList(playlist)) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Remove playlist from collection failed."), QString());
        LOG4CPLUS_ERROR(logger(), "Unable to remove playList, id: " << plid << " from collection id: " << clid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " removed from collection id: " << clid);
    msg = buildOkMsg(CONTROLLER_TR("Playlist removed successfully from collection."), collection->getName(), QString());
    return true;
}

bool Controller::plClearItems(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not clear playlist.");
    const int plid = VexaPlayListPlId(valueHash(request)).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot clear items from invalid playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    if (!playlist->clearItems()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Clear playlist failed."), QString());
        LOG4CPLUS_ERROR(logger(), "Clear playlist id: " << plid << " failed");
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Playlist id: " << plid << " cleared successfully");
    msg = buildOkMsg(CONTROLLER_TR("Playlist cleared successfully."), playlist->getName(), QString());
    return true;
}

bool Controller::plMoveItems(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not move items in playlist.");
    const VexaPlayListPlMoveItems record(valueHash(request));
    const int plid = record.plid();
    const QList<int> items = record.items();
    const int to = record.to();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot move items in invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Please select one or more items to move."), QString());
        LOG4CPLUS_ERROR(logger(), "Please select one or more items to move in playlist id: " << plid);
        return false;
    }
    if (to < 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot move items to negative position."), QString());
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
        msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot move items, sequence number is not in valid range."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot move items, sequence number is not in valid range");
        return false;
    }
    LOG4CPLUS_TRACE(logger(), "indicies: " << items << " toSeqNum " << to);
    if (!playlist->moveItems(items, to)) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Move items failed"), QString());
        QString list;
        for (int item : items)
            list += QStringLiteral("%1,").arg(item);
        LOG4CPLUS_ERROR(logger(), "Unable to move items (" << list << ") to seqnum " << to << " in playlist id: " << plid);
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Items in playlist id: " << plid << " moved successfully to position: " << to);
    msg = buildOkMsg(CONTROLLER_TR("Items removed successfully from playlist."), playlist->getName(), QString());
    return true;
}

bool Controller::plRemoveItems(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not remove items from playlist.");
    const VexaPlayListPlRemoveItems record(valueHash(request));
    const int plid = record.plid();
    const QList<int> items = record.items();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot delete items from invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Please select one or more items to remove."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot delete zero items from playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    const int removed = playlist->removeItems(items);
    LOG4CPLUS_TRACE(logger(), "numItemsChanged " << removed);
    if (removed <= 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Remove items failed"), QString());
        LOG4CPLUS_ERROR(logger(), "Remove items from playlist id: " << plid << " failed");
        return false;
    }
    LOG4CPLUS_INFO(logger(), "Removed " << removed << " items from playlist id: " << plid);
    msg = buildOkMsg(CONTROLLER_TR("Items removed successfully from playlist."), QString::number(removed), QString());
    return true;
}

bool Controller::plPlay(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not start playback on playlist.");
    const int plid = VexaPlayListPlId(valueHash(request)).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot play invalid playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    if (playlist->getSize() == 0) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("There are no items in the playlist."), playlist->getName());
        return false;
    }
    const QList<VexaPlayListItem> first = playlist->getItems(0, 0);
    if (first.isEmpty()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot get first item"), QString());
        return false;
    }
    tryStartItem(first.first(), playlist, 0);
    msg = buildOkMsg(CONTROLLER_TR("Playback started successfully on playlist."), playlist->getName(), QString());
    return true;
}

void Controller::plAddItems(CMSetDataRequest request)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not add items to playlist.");
    const VexaPlayListPlAddItems record(valueHash(request));
    ReqGroupProperties properties;
    properties.plid = record.plid();
    properties.fromPlid = record.fromPlid();
    properties.request = request;
    QList<CMPath> paths = record.items();
    QString msg;

    if (paths.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), QStringLiteral("adding whole playlist (id: %1) to playlist (id: %2)")
                                      .arg(properties.fromPlid)
                                      .arg(properties.plid));
        PlayListBase* source = m_manager->getPlayListByUid(properties.fromPlid);
        if (!checkPlayList(source, properties.fromPlid, prefix, msg)) {
            setReply(request, false, msg);
            return;
        }
        // Its items would arrive in the list itself, which would then be deleted as their source.
        if (properties.fromPlid == properties.plid) {
            msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot add a playlist to itself."), QString());
            LOG4CPLUS_ERROR(logger(), "Cannot add playlist id: " << properties.plid << " to itself");
            setReply(request, false, msg);
            return;
        }
        for (const VexaPlayListItem& item : source->getItems(0, source->getSize()))
            paths.append(VexaPlayListItemPath().appended(QString::number(item.uid())));
        properties.wholePlaylist = true;
    }
    properties.position = readPosition(record.mode());
    if (!checkPlayListId(properties.plid, prefix, msg)) {
        setReply(request, false, msg);
        return;
    }
    if (paths.isEmpty()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Please select one or more items to add."), QString());
        LOG4CPLUS_ERROR(logger(), "There isn't any items to add to playlist id: " << properties.plid);
        setReply(request, false, msg);
        return;
    }
    QStringList texts;
    for (const CMPath& path : paths)
        texts.append(path.toEncoded());
    LOG4CPLUS_TRACE(logger(), "itemList: " << texts);

    auto* group = new CMRequestGroup(this);
    m_ReqGroupPropertiesHash.insert(group, properties);
    // One preparation per owning module, in the order the modules first appear.
    QStringList prefixes;
    QHash<QString, QStringList> pathsByPrefix;
    for (const CMPath& path : paths) {
        if (!pathsByPrefix.contains(path.prefix()))
            prefixes.append(path.prefix());
        pathsByPrefix[path.prefix()].append(path.toEncoded());
    }
    for (const QString& modulePrefix : prefixes) {
        CMPath preparePath = CMPath::fromPrefix(modulePrefix);
        preparePath.setPath(VexaPlayListPrepareItems());
        const QString name = preparePath.toEncoded();
        LOG4CPLUS_TRACE(logger(), "requestPrefix: " << modulePrefix << " call: " << name);
        LOG4CPLUS_TRACE(logger(), "items: " << pathsByPrefix.value(modulePrefix));
        group->addInvoke(name, preparePath, QVariant(pathsByPrefix.value(modulePrefix)));
    }
    group->setCallback(this, SLOT(on_prepareItemsGroup_finished()));
}

void Controller::on_prepareItemsGroup_finished()
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    auto* group = qobject_cast<CMRequestGroup*>(sender());
    if (!group)
        PlayListsLog::fatalStop(logger(), QStringLiteral("Called without request group as sender"));
    if (!m_ReqGroupPropertiesHash.contains(group))
        PlayListsLog::fatalStop(logger(), QStringLiteral("Called without request group stored in m_ReqGroupPropertiesHash"));
    const ReqGroupProperties properties = m_ReqGroupPropertiesHash.take(group);
    const QString prefix = CONTROLLER_TR("Could not add items to playlist.");

    QString addMsg;
    const int added = qMax(0, addItemsFromAllReplays(properties, group, &addMsg));
    LOG4CPLUS_TRACE(logger(), "numItemsAdded: " << added << " addItemsResMsg: " << addMsg);
    // Adding a whole playlist moves its items: the source goes once anything
    // arrived. The play queue cannot go, so merging it into a playlist copies.
    if (added > 0 && properties.wholePlaylist && properties.fromPlid != 0)
        m_manager->deletePlayList(properties.fromPlid);

    QString msg;
    bool ok = false;
    if (added < 1) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("No items were added."), addMsg);
        LOG4CPLUS_TRACE(logger(), "No items were added to playlist id: " << properties.plid);
    } else {
        PlayListBase* playlist = m_manager->getPlayListByUid(properties.plid);
        ok = checkPlayList(playlist, properties.plid, prefix, msg);
        if (!ok)
            LOG4CPLUS_ERROR(logger(), "Playlist id: " << properties.plid << " doesn't exist");
        if (ok && properties.position == VexaPlayListAddPosition::Now) {
            const int last = playlist->getLastSequenceNumber();
            const int next = firstAddedNow(playlist, added);
            LOG4CPLUS_TRACE(logger(), "addMode: now" << " lastSeqNum: " << last << " nextSeqNum: " << next);
            const QList<VexaPlayListItem> items = playlist->getItems(next, next);
            if (items.size() != 1) {
                msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot get last sequence number."), QString());
                ok = false;
            } else {
                tryStartItem(items.first(), playlist, next);
            }
        }
        if (ok)
            msg = buildOkMsg(CONTROLLER_TR("Items added successfully to playlist."), playlist->getName(),
                             QString::number(added));
    }
    setReply(properties.request, ok, msg);
    LOG4CPLUS_INFO(logger(), "Add items finished, num added: " << added);
    group->deleteLater();
}

int Controller::addItemsFromAllReplays(const ReqGroupProperties& properties, CMRequestGroup* group, QString* msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    QList<VexaPlayListItem> allItems;
    for (const CMReply<QVariant>& reply : group->replies()) {
        reply.waitForFinished(-1);
        LOG4CPLUS_TRACE(logger(), "curReplyList: " << reply.data());
        if (reply.hasError()) {
            LOG4CPLUS_ERROR(logger(), "replay error: " << reply.error().message());
            continue;
        }
        for (const QVariant& item : reply.data().toList())
            allItems.append(VexaPlayListItem::fromHash(item.toHash()));
    }
    PlayListBase* playlist = m_manager->getPlayListByUid(properties.plid);
    if (!playlist) {
        LOG4CPLUS_TRACE(logger(), "Cannot find playlist with plid: " << properties.plid);
        *msg = CONTROLLER_TR("There is no playlist with this ID.") + QStringLiteral(" (%1)").arg(properties.plid);
        return -1;
    }
    return addItemsToPlaylist(playlist, allItems, properties.position, msg);
}

int Controller::addItemsToPlaylist(PlayListBase* playlist, const QList<VexaPlayListItem>& items,
                                   VexaPlayListAddPosition::Enum position, QString* msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    QStringList titles;
    for (const VexaPlayListItem& item : items)
        titles.append(item.title());
    LOG4CPLUS_TRACE(logger(), "itemList: " << titles);

    QList<VexaPlayListItem> accepted;
    for (const VexaPlayListItem& item : items) {
        // Every item arrived as a record, whose roles were read as it was.
        if (item.rolesDescribePlayableTrack()) {
            accepted.append(item);
        } else {
            LOG4CPLUS_TRACE(logger(), "Invalid file, missing roles: "
                                          << "Missing title or type==audio or [resource uri and prePlayPath]"
                                          << item.url());
        }
    }
    if (accepted.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), "no playitem found");
        *msg = CONTROLLER_TR("No playitem found.");
        return 0;
    }
    const int res = playlist->addItems(position, accepted);
    LOG4CPLUS_TRACE(logger(), "addItems() res: " << res);
    if (res < 0) {
        *msg = QStringLiteral("%1 %2").arg(CONTROLLER_TR("Unable to add more items to the playlist."),
                                           CONTROLLER_TR("Items reached limit."));
    } else {
        *msg = CONTROLLER_TR("%1 items added.").arg(res);
        LOG4CPLUS_TRACE(logger(), "added " << res << " items");
    }
    LOG4CPLUS_TRACE(logger(), "Leave");
    return res;
}

bool Controller::plAddExternalItems(CMSetDataRequest request, QString& msg)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QString prefix = CONTROLLER_TR("Could not add external items to playlist.");
    const VexaPlayListPlAddExternalItems record(valueHash(request));
    const int plid = record.plid();
    const QList<VexaPlayListItem> items = record.items();
    const VexaPlayListAddPosition::Enum position = readPosition(record.mode());
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot add items to invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("Please select one or more items to add."), QString());
        LOG4CPLUS_ERROR(logger(), "Cannot add zero items to playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    // The reason stays in the log: this command answers with the bare sentence.
    QString addMsg;
    const int res = addItemsToPlaylist(playlist, items, position, &addMsg);
    LOG4CPLUS_TRACE(logger(), "addItemsRes: " << res);
    if (res < 1) {
        msg = buildErrMsg(prefix, CONTROLLER_TR("No items were added."), QString());
        LOG4CPLUS_TRACE(logger(), "No items were added to playlist id: " << plid);
        return false;
    }
    LOG4CPLUS_TRACE(logger(), "plsize: " << playlist->getSize());
    if (position == VexaPlayListAddPosition::Now) {
        const int next = firstAddedNow(playlist, res);
        LOG4CPLUS_TRACE(logger(), "mode: New nextSeqNum: " << next);
        const QList<VexaPlayListItem> started = playlist->getItems(next, next);
        if (started.isEmpty()) {
            msg = buildErrMsg(prefix, CONTROLLER_TR("Cannot get last item."), QString());
            LOG4CPLUS_ERROR(logger(), "Cannot get last item for playlist id: " << plid);
            return false;
        }
        tryStartItem(started.first(), playlist, next);
    }
    LOG4CPLUS_INFO(logger(), "Items added successfully to playlist id: " << plid);
    msg = buildOkMsg(CONTROLLER_TR("Items added successfully to playlist."), playlist->getName(), QString());
    return true;
}

void Controller::plPrepareItems(CMSetDataRequest request)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const QVariantList prepared = preparePlaylistItems(request.value().toStringList());
    LOG4CPLUS_TRACE(logger(), "preparedItems: " << QVariant(prepared));
    request.reply().setData(prepared);
}

QVariantList Controller::preparePlaylistItems(const QStringList& paths)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    QVariantList items;
    for (const QString& text : paths) {
        const QString last = CMPath(text).lastSegment();
        bool ok = false;
        const int uid = last.toInt(&ok, 10);
        if (!ok) {
            LOG4CPLUS_TRACE(logger(), "conversion error occured: uid, str=" << last << " path=" << text);
            continue;
        }
        items.append(m_manager->getPlayListItemByUid(uid).toHash());
    }
    LOG4CPLUS_TRACE(logger(), "Leave");
    return items;
}

void Controller::tryStartItem(const VexaPlayListItem& item, const PlayListBase* playlist, int seqIndex)
{
    PLAYLISTS_LOG_ENTER(logger(), "");
    const int plid = playlist->getUid();
    LOG4CPLUS_TRACE(logger(), "seqIndex: " << seqIndex << " plid: " << plid);
    const CMPath path =
        plid == 0 ? VexaPlayListPqGetItemsPath() : VexaPlayListPlGetItemsPath().appended(QString::number(plid));
    LOG4CPLUS_TRACE(logger(), "path: " << path);
    if (item.url().isEmpty()) {
        LOG4CPLUS_ERROR(logger(), "Item " << item.uid() << " hasn't url");
        return;
    }
    VexaRoles containerRoles;
    containerRoles.setType(VexaRolesType::Container);
    containerRoles.setPath(path);
    containerRoles.setContainerPlayable(true);
    VexaMetaData meta;
    meta.setPlayLogicPath(VexaPlayListsPlayLogicPath());
    VexaMediaData media;
    media.setMetaData(meta);
    containerRoles.setMediaData(media);
    const VexaRoles trackRoles = playlist->itemToVexaRoles(item);
    LOG4CPLUS_TRACE(logger(), "play item: " << containerRoles);
    LOG4CPLUS_TRACE(logger(), "play item trackRoles: " << trackRoles);
    PlayLogicInterface::playerInstance()->playContainer(containerRoles, trackRoles, seqIndex, 0, false);
    LOG4CPLUS_TRACE(logger(), "playContainer() called");
}

int Controller::firstAddedNow(const PlayListBase* playlist, int added) const
{
    // The store puts entries added "now" after the play position, or at the
    // end when there is none or it lies past the end (the entry it named, the
    // last one, was removed).
    const int last = playlist->getLastSequenceNumber();
    const int sizeBefore = playlist->getSize() - added;
    return last >= 0 && last + 1 <= sizeBefore ? last + 1 : sizeBefore;
}
