// Commands that gather or start entries: add-items asks each owning module
// to describe its paths and finishes when all have answered; add-external-items
// takes whole tracks; an add "now" and play-playlist start playback.
#include "Controller.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"
#include "PlayListsVocabulary.h"

#include "CMRequestGroup.h"
#include "Language.h"
#include "PlayLogicInterface.h"
#include "VexaJson.h"
#include "VexaPaths.h"
#include "VexaPlayListPlAddExternalItems.h"
#include "VexaPlayListPlAddItems.h"
#include "VexaPlayListPlId.h"

namespace {

const log4cplus::Logger& logger()
{
    return PlayListsLog::logger();
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

bool Controller::plPlay(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not start playback on playlist.");
    const int plid = VexaPlayListPlId(request.value().toHash()).plid();
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot play invalid playlist id: " << plid);
        return false;
    }
    PlayListBase* playlist = findPlayList(plid, prefix, msg);
    if (!playlist)
        return false;
    if (playlist->getSize() == 0) {
        msg = buildErrMsg(prefix, VEXA_TR("There are no items in the playlist."), playlist->getName());
        return false;
    }
    const QList<VexaPlayListItem> first = playlist->getItems(0, 0);
    if (first.isEmpty()) {
        msg = buildErrMsg(prefix, VEXA_TR("Cannot get first item"), QString());
        return false;
    }
    tryStartItem(first.first(), playlist, 0);
    msg = buildOkMsg(VEXA_TR("Playback started successfully on playlist."), playlist->getName(), QString());
    return true;
}

void Controller::plAddItems(CMSetDataRequest request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not add items to playlist.");
    const VexaPlayListPlAddItems record(request.value().toHash());
    ReqGroupProperties properties;
    properties.plid = record.plid();
    properties.fromPlid = record.fromPlid();
    properties.request = request;
    QList<CMPath> paths = record.items();
    PlayListBase* source = nullptr;
    QString msg;

    if (paths.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), QStringLiteral("adding whole playlist (id: %1) to playlist (id: %2)")
                                      .arg(properties.fromPlid)
                                      .arg(properties.plid));
        source = m_manager->getPlayListByUid(properties.fromPlid);
        if (!checkPlayList(source, properties.fromPlid, prefix, msg)) {
            setReply(request, false, msg);
            return;
        }
        // Its items would arrive in the list itself, which would then be deleted as their source.
        if (properties.fromPlid == properties.plid) {
            msg = buildErrMsg(prefix, VEXA_TR("Cannot add a playlist to itself."), QString());
            LOG4CPLUS_ERROR(logger(), "Cannot add playlist id: " << properties.plid << " to itself");
            setReply(request, false, msg);
            return;
        }
        properties.wholePlaylist = true;
    }
    properties.position = readPosition(record.mode());
    if (!checkPlayListId(properties.plid, prefix, msg)) {
        setReply(request, false, msg);
        return;
    }
    if (properties.wholePlaylist ? source->getSize() == 0 : paths.isEmpty()) {
        msg = buildErrMsg(prefix, VEXA_TR("Please select one or more items to add."), QString());
        LOG4CPLUS_ERROR(logger(), "There isn't any items to add to playlist id: " << properties.plid);
        setReply(request, false, msg);
        return;
    }
    if (properties.wholePlaylist) {
        // The store moves (from the play queue: copies) all entries at once
        // instead of this module preparing every item of its own and adding
        // it again: the same list in a few statements where a large one would
        // take seconds. Each entry passed the add checks when it arrived.
        QString addMsg;
        finishAddItems(properties, addWholePlayList(properties, source, &addMsg), addMsg);
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
    VEXA_LOG_ENTER(TRACE, logger(), "");
    auto* group = qobject_cast<CMRequestGroup*>(sender());
    if (!group)
        PlayListsLog::fatalStop(logger(), QStringLiteral("Called without request group as sender"));
    if (!m_ReqGroupPropertiesHash.contains(group))
        PlayListsLog::fatalStop(logger(), QStringLiteral("Called without request group stored in m_ReqGroupPropertiesHash"));
    const ReqGroupProperties properties = m_ReqGroupPropertiesHash.take(group);
    QString addMsg;
    const int added = addItemsFromAllReplays(properties, group, &addMsg);
    finishAddItems(properties, added, addMsg);
    group->deleteLater();
}

void Controller::finishAddItems(const ReqGroupProperties& properties, int result, const QString& addMsg)
{
    const QString prefix = VEXA_TR("Could not add items to playlist.");
    const int added = qMax(0, result);
    LOG4CPLUS_TRACE(logger(), "numItemsAdded: " << added << " addItemsResMsg: " << addMsg);
    // Adding a whole playlist moves its items: the source goes once anything
    // arrived. The play queue cannot go, so merging it into a playlist copies.
    if (added > 0 && properties.wholePlaylist && properties.fromPlid != 0)
        m_manager->deletePlayList(properties.fromPlid);

    QString msg;
    bool ok = false;
    if (added < 1) {
        msg = buildErrMsg(prefix, VEXA_TR("No items were added."), addMsg);
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
                msg = buildErrMsg(prefix, VEXA_TR("Cannot get last sequence number."), QString());
                ok = false;
            } else {
                tryStartItem(items.first(), playlist, next);
            }
        }
        if (ok)
            msg = buildOkMsg(VEXA_TR("Items added successfully to playlist."), playlist->getName(),
                             QString::number(added));
    }
    setReply(properties.request, ok, msg);
    LOG4CPLUS_INFO(logger(), "Add items finished, num added: " << added);
}

int Controller::addItemsFromAllReplays(const ReqGroupProperties& properties, CMRequestGroup* group, QString* msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
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
    PlayListBase* playlist = findAddTarget(properties.plid, msg);
    return playlist ? addItemsToPlaylist(playlist, allItems, properties.position, msg) : -1;
}

int Controller::addWholePlayList(const ReqGroupProperties& properties, PlayListBase* source, QString* msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    PlayListBase* playlist = findAddTarget(properties.plid, msg);
    if (!playlist)
        return -1;
    // The play queue cannot go, so merging it into a playlist copies.
    const int res = playlist->addItemsOf(properties.position, source, properties.fromPlid != 0);
    *msg = addedItemsMessage(res);
    return res;
}

PlayListBase* Controller::findAddTarget(int plid, QString* msg)
{
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!playlist) {
        LOG4CPLUS_TRACE(logger(), "Cannot find playlist with plid: " << plid);
        *msg = VEXA_TR("There is no playlist with this ID.") + QStringLiteral(" (%1)").arg(plid);
    }
    return playlist;
}

QString Controller::addedItemsMessage(int res)
{
    if (res < 0) {
        return QStringLiteral("%1 %2").arg(VEXA_TR("Unable to add more items to the playlist."),
                                           VEXA_TR("Items reached limit."));
    }
    LOG4CPLUS_TRACE(logger(), "added " << res << " items");
    return VEXA_TR("%1 items added.").arg(res);
}

int Controller::addItemsToPlaylist(PlayListBase* playlist, const QList<VexaPlayListItem>& items,
                                   VexaPlayListAddPosition::Enum position, QString* msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    if (logger().isEnabledFor(log4cplus::TRACE_LOG_LEVEL)) {
        QStringList titles;
        for (const VexaPlayListItem& item : items)
            titles.append(item.title());
        LOG4CPLUS_TRACE(logger(), "itemList: " << titles);
    }

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
        *msg = VEXA_TR("No playitem found.");
        return 0;
    }
    const int res = playlist->addItems(position, accepted);
    LOG4CPLUS_TRACE(logger(), "addItems() res: " << res);
    *msg = addedItemsMessage(res);
    LOG4CPLUS_TRACE(logger(), "Leave");
    return res;
}

bool Controller::plAddExternalItems(CMSetDataRequest request, QString& msg)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QString prefix = VEXA_TR("Could not add external items to playlist.");
    const VexaPlayListPlAddExternalItems record(request.value().toHash());
    const int plid = record.plid();
    const QList<VexaPlayListItem> items = record.items();
    const VexaPlayListAddPosition::Enum position = readPosition(record.mode());
    if (!checkPlayListId(plid, prefix, msg)) {
        LOG4CPLUS_ERROR(logger(), "Cannot add items to invalid playlist id: " << plid);
        return false;
    }
    if (items.isEmpty()) {
        msg = buildErrMsg(prefix, VEXA_TR("Please select one or more items to add."), QString());
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
        msg = buildErrMsg(prefix, VEXA_TR("No items were added."), QString());
        LOG4CPLUS_TRACE(logger(), "No items were added to playlist id: " << plid);
        return false;
    }
    LOG4CPLUS_TRACE(logger(), "plsize: " << playlist->getSize());
    if (position == VexaPlayListAddPosition::Now) {
        const int next = firstAddedNow(playlist, res);
        LOG4CPLUS_TRACE(logger(), "mode: New nextSeqNum: " << next);
        const QList<VexaPlayListItem> started = playlist->getItems(next, next);
        if (started.isEmpty()) {
            msg = buildErrMsg(prefix, VEXA_TR("Cannot get last item."), QString());
            LOG4CPLUS_ERROR(logger(), "Cannot get last item for playlist id: " << plid);
            return false;
        }
        tryStartItem(started.first(), playlist, next);
    }
    LOG4CPLUS_INFO(logger(), "Items added successfully to playlist id: " << plid);
    msg = buildOkMsg(VEXA_TR("Items added successfully to playlist."), playlist->getName(), QString());
    return true;
}

void Controller::plPrepareItems(CMSetDataRequest request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const QVariantList prepared = preparePlaylistItems(request.value().toStringList());
    LOG4CPLUS_TRACE(logger(), "preparedItems: " << QVariant(prepared));
    request.reply().setData(prepared);
}

QVariantList Controller::preparePlaylistItems(const QStringList& paths)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
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
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const int plid = playlist->getUid();
    LOG4CPLUS_TRACE(logger(), "seqIndex: " << seqIndex << " plid: " << plid);
    const CMPath path = itemsPathOf(plid);
    LOG4CPLUS_TRACE(logger(), "path: " << path);
    if (item.url().isEmpty()) {
        LOG4CPLUS_ERROR(logger(), "Item " << item.uid() << " hasn't url");
        return;
    }
    VexaRoles containerRoles;
    containerRoles.setType(VexaRolesType::Container);
    containerRoles.setPath(path);
    containerRoles.setContainerPlayable(true);
    containerRoles.setMediaData(playLogicMediaData());
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
