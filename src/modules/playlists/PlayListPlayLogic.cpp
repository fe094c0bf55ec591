#include "PlayListPlayLogic.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListWorker.h"

#include "CMError.h"
#include "Language.h"
#include "VexaConnect.h"
#include "VexaLog.h"
#include "VexaPaths.h"
#include "VexaPlayListAddPosition.h"
#include "VexaPlayLogicChangePlayModeArgs.h"


namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("PlayListsPlayLogic"));
}

bool carriesSequenceNumber(const VexaRoles& roles)
{
    return roles.value().contains(VexaValue::I32());
}

struct PlayListSignal
{
    const char* signal;
    const char* slot;
};

// The playlist signals the play logic follows while that playlist is current.
const PlayListSignal kPlayListSignals[] = {
    {"2itemsCleared()", "1on_currentPlayList_cleared()"},
    {"2itemMoved(int,int)", "1on_currentPlayList_itemMoved(int,int)"},
    {"2itemsAdded(QString,int,int)", "1on_currentPlayList_itemsAdded(QString,int,int)"},
    {"2itemsRemoved(QList<int>,int)", "1on_currentPlayList_itemsRemoved(QList<int>,int)"},
    {"2shuffleChanged(bool)", "1on_currentPlayList_shuffleChanged(bool)"},
    {"2repeatAllChanged(bool)", "1on_currentPlayList_repeatAllChanged(bool)"},
};

} // namespace

PlayListPlayLogic::PlayListPlayLogic(PlayListWorker* worker, PlayListManager* manager, QObject* /*parent*/)
    : PlayListPlayLogic(worker->nodes(), manager)
{
    m_worker = worker;
}

PlayListPlayLogic::PlayListPlayLogic(CMNodes* nodes, PlayListManager* manager)
    : StreamerPlayLogic(nodes, VexaPlayListsPlayLogicPath()), m_manager(manager)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    vexaConnect(m_manager, "2playlistDeleted(int)", this, "1on_playlist_deleted(int)", Qt::AutoConnection);
}

PlayListPlayLogic::~PlayListPlayLogic() = default;

void PlayListPlayLogic::setCurrentPlayList(PlayListBase* pl)
{
    VEXA_LOG_ENTER(TRACE, logger(), "pl=" << (pl ? pl->getUid() : -1));
    if (m_currentPlayList) {
        for (const PlayListSignal& s : kPlayListSignals)
            vexaDisconnect(m_currentPlayList, s.signal, this, s.slot);
    }
    m_currentPlayList = pl;
    if (m_currentPlayList) {
        for (const PlayListSignal& s : kPlayListSignals)
            vexaConnect(m_currentPlayList, s.signal, this, s.slot, Qt::AutoConnection);
    }
}

void PlayListPlayLogic::setRepeatMode(RepeatMode mode)
{
    m_repeatMode = mode;
    if (m_currentPlayList)
        m_currentPlayList->setRepeatAll(mode == RepeatAll);
}

VexaRoles PlayListPlayLogic::getCurrentTrack()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    return getTrackRelative(0);
}

VexaRoles PlayListPlayLogic::getTrackAbsolute(int index)
{
    VEXA_LOG_ENTER(TRACE, logger(), "index=" << index);
    if (!m_currentPlayList)
        return VexaRoles();
    const QList<VexaPlayListItem> items = m_currentPlayList->getItems(index, index);
    if (items.isEmpty()) {
        LOG4CPLUS_DEBUG(logger(), "Reached last item of playlist");
        return VexaRoles();
    }
    return m_currentPlayList->itemToVexaRoles(items.first());
}

VexaRoles PlayListPlayLogic::getTrackRelative(int offset)
{
    VEXA_LOG_ENTER(TRACE, logger(), "offset=" << offset);
    if (!m_currentPlayList)
        return VexaRoles();
    const int index = m_currentPlayList->getLastSequenceNumber() + offset;
    const QList<VexaPlayListItem> items = m_currentPlayList->getItems(index, index);
    if (items.isEmpty()) {
        LOG4CPLUS_DEBUG(logger(), "Reached last item of playlist");
        return VexaRoles();
    }
    return m_currentPlayList->itemToVexaRoles(items.first());
}

VexaRoles PlayListPlayLogic::getNextTrack()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    if (data().streamerError().contains(VexaError::Code())) {
        // Five failing starts in a row are retried with the next entry; the sixth ends playback.
        if (++m_errorCount >= 6) {
            LOG4CPLUS_ERROR(logger(), "Reached maximum error count exiting");
            return VexaRoles();
        }
    } else {
        m_errorCount = 0;
    }
    VexaRoles result;
    if (!m_shuffleEnabled) {
        result = getTrackRelative(1);
    } else {
        const int index = getNextShuffleItem();
        if (index != -1)
            result = getTrackAbsolute(index);
    }
    if (result.isEmpty() && m_currentPlayList && m_repeatMode == RepeatAll) {
        result = getTrackAbsolute(0);
        if (result.isEmpty())
            LOG4CPLUS_WARN(logger(), "Playlist should start from beginning again, but does not contain any tracks");
    }
    return result;
}

VexaRoles PlayListPlayLogic::getPreviousTrack()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    VexaRoles result;
    if (!m_shuffleEnabled) {
        result = getTrackRelative(-1);
    } else {
        const int index = getPrevShuffleItem();
        if (index != -1)
            result = getTrackAbsolute(index);
    }
    if (result.isEmpty() && m_currentPlayList && m_repeatMode == RepeatAll) {
        result = getTrackAbsolute(m_currentPlayList->getSize() - 1);
        if (result.isEmpty())
            LOG4CPLUS_WARN(logger(),
                           "Playlist should wrap around and continue with last track, but does not contain any tracks");
    }
    return result;
}

void PlayListPlayLogic::updateSequenceNumberInData()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    if (!m_currentPlayList)
        return;
    VexaPlayLogicData current = data();
    VexaRoles track = current.trackRoles();
    if (!carriesSequenceNumber(track)) {
        LOG4CPLUS_WARN(logger(), "No current sequence number in playlogic data");
        return;
    }
    const int position = m_currentPlayList->getLastSequenceNumber();
    if (track.value().i32() == position)
        return;
    // Only the number is kept: the value of a track's roles is its position.
    VexaValue value;
    value.setI32(position);
    track.setValue(value);
    current.setTrackRoles(track);
    setData(current);
}

void PlayListPlayLogic::on_playlist_deleted(int plid)
{
    if (!m_currentPlayList || m_currentPlayList->getUid() != plid)
        return;
    playerInstance()->stop(VexaPlayLogicStopReason::Stopped);
    setCurrentPlayList(nullptr);
}

void PlayListPlayLogic::on_currentPlayList_cleared()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    playerInstance()->stop(VexaPlayLogicStopReason::Stopped);
}

void PlayListPlayLogic::on_currentPlayList_itemsRemoved(QList<int> indices, int lastSeqNumBeforeRemove)
{
    VEXA_LOG_ENTER(TRACE, logger(), "indices.size()=" << indices.size() << " lastSeqNum=" << lastSeqNumBeforeRemove);
    if (m_currentPlayList->getSize() == 0) {
        on_currentPlayList_cleared();
        return;
    }
    if (m_shuffleEnabled)
        shuffleItemsRemoved(indices);
    if (!indices.contains(lastSeqNumBeforeRemove)) {
        updateSequenceNumberInData();
        return;
    }
    // The running entry went: the one that moved into its place plays now.
    int before = 0;
    for (int index : indices) {
        if (index < lastSeqNumBeforeRemove)
            ++before;
    }
    const VexaRoles track = getTrackAbsolute(lastSeqNumBeforeRemove - before);
    if (!track.isEmpty())
        playTrackRoles(track);
    else if (m_currentPlayList->getRepeatAll())
        playTrackRoles(getNextTrack());
    else
        playerInstance()->stop(VexaPlayLogicStopReason::Stopped);
}

void PlayListPlayLogic::on_currentPlayList_itemMoved(int from, int to)
{
    VEXA_LOG_ENTER(TRACE, logger(), "from=" << from << " to=" << to);
    if (m_shuffleEnabled)
        shuffleItemMoved(from, to);
    updateSequenceNumberInData();
}

void PlayListPlayLogic::on_currentPlayList_itemsAdded(QString positionStr, int firstSeqNum, int count)
{
    VEXA_LOG_ENTER(TRACE, logger(), "pos=" << positionStr << " count=" << count
                           << " lastSeq=" << (m_currentPlayList ? m_currentPlayList->getLastSequenceNumber() : -1));
    const int position = VexaPlayListAddPosition::fromString(positionStr);
    // Entries inserted right after the current one change what follows it.
    if (position == VexaPlayListAddPosition::Next && carriesSequenceNumber(m_nextTrackRoles))
        prepareNextMedia();
    if (m_shuffleEnabled)
        shuffleItemsAdded(position, firstSeqNum, count);
}

void PlayListPlayLogic::on_currentPlayList_shuffleChanged(bool newValue)
{
    VEXA_LOG_ENTER(TRACE, logger(), "newValue=" << boolText(newValue));
    if (m_shuffleEnabled == newValue)
        return;
    setPlayMode(VexaPlayerPlayMode::compose(newValue, VexaPlayerPlayMode::repeat(playMode())));
}

void PlayListPlayLogic::on_currentPlayList_repeatAllChanged(bool newValue)
{
    VEXA_LOG_ENTER(TRACE, logger(), "newValue=" << boolText(newValue));
    if (newValue != (m_repeatMode == RepeatAll))
        setPlayMode(VexaPlayerPlayMode::compose(m_shuffleEnabled, newValue ? VexaPlayerPlayMode::Repeat::All
                                                                           : VexaPlayerPlayMode::Repeat::None));
}

void PlayListPlayLogic::playTrackRoles(VexaRoles roles)
{
    // Where the play position is kept: the entry sent to the player.
    if (m_currentPlayList && carriesSequenceNumber(roles))
        m_currentPlayList->setLastSequenceNumber(roles.value().i32());
    sendPlayCommand(roles, QHash<QString, QVariant>());
}

void PlayListPlayLogic::playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args)
{
    VEXA_LOG_ENTER(TRACE, logger(), "args=" << args);
    // A new playback starts from nothing; the playlists' stored flags stay.
    setCurrentPlayList(nullptr);
    m_shuffleEnabled = false;
    m_repeatMode = RepeatNone;
    m_shuffleSeq.clear();
    m_shuffleCurIndex = -1;
    m_nextTrackRoles = VexaRoles();
    m_errorCount = 0;
    m_nextMediaPrepared = false;

    const VexaRoles media = args.mediaRoles();
    if (args.type() == 1) {
        if (media.path().isEmpty()) {
            LOG4CPLUS_DEBUG(logger(), "mediaRoles path is empty - playing trackRoles directly");
            playTrackRoles(args.trackRoles());
        } else {
            LOG4CPLUS_DEBUG(logger(), "mediaRoles path is " << media.path() << " - playing list");
            startPlayback(media.path(), args.index(), request);
        }
    } else if (media.type() == VexaRolesType::Container) {
        startPlayback(media.path(), 0, request);
    }
    request.reply().setFinished();
}

void PlayListPlayLogic::startPlayback(const CMPath& path, int index, CMSetDataRequest request)
{
    VEXA_LOG_ENTER(INFO, logger(), "pl=" << path << " track=" << index);
    PlayListBase* pl = nullptr;
    if (path.startsWith(VexaPlayListPlGetItemsPath())) {
        const int uid = path.lastSegment().toInt();
        if (uid == 0) {
            LOG4CPLUS_ERROR(logger(), "playInternal called for invalid playlist container " << path);
            request.reply().setError(CMError(QStringLiteral("PlayList Error"), CMError::DefaultTitle(),
                                             TrString(VEXA_TR("Play called on invalid playlist container"))));
            return;
        }
        pl = m_manager->getPlayListByUid(uid);
    } else if (path.startsWith(VexaPlayListPqGetItemsPath())) {
        pl = m_manager->getPlayQueue();
    } else {
        return;
    }
    if (!pl)
        return;
    setCurrentPlayList(pl);
    setPlayMode(VexaPlayerPlayMode::compose(pl->getShuffle(), pl->getRepeatAll() ? VexaPlayerPlayMode::Repeat::All
                                                                                  : VexaPlayerPlayMode::Repeat::None));
    LOG4CPLUS_DEBUG(logger(), "index=" << index << " size=" << pl->getSize());
    setShuffleEnabled(pl->getShuffle());
    setRepeatMode(pl->getRepeatAll() ? RepeatAll : RepeatNone);
    playTrackRoles(getTrackAbsolute(index));
}

void PlayListPlayLogic::nextInternal(const CMSetDataRequest& request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const VexaRoles track = getNextTrack();
    if (track.isEmpty()) {
        LOG4CPLUS_DEBUG(logger(), "Reached last item of playlist for nextInternal");
    } else {
        m_nextTrackRoles = VexaRoles();
        playTrackRoles(track);
    }
    request.reply().setFinished();
}

void PlayListPlayLogic::previousInternal(const CMSetDataRequest& request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    // Late in a track "previous" restarts it; the limit itself still goes back.
    const VexaRoles track =
        playTime() <= qint64(VexaPreviousTrackTimeLimit()) ? getPreviousTrack() : getCurrentTrack();
    if (track.isEmpty()) {
        LOG4CPLUS_DEBUG(logger(), "Reached first item of playlist for previousInternal");
    } else {
        m_nextTrackRoles = VexaRoles();
        playTrackRoles(track);
    }
    request.reply().setFinished();
}

void PlayListPlayLogic::stopInternal(const CMSetDataRequest& request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    setCurrentPlayList(nullptr);
    StreamerPlayLogic::stopInternal(request);
}

void PlayListPlayLogic::prepareNextMedia()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    const VexaRoles next = m_repeatMode == RepeatOne ? getCurrentTrack() : getNextTrack();
    if (!next.isEmpty()) {
        m_nextTrackRoles = next;
        sendSetNextMediaCommand(next, QHash<QString, QVariant>());
    } else {
        LOG4CPLUS_DEBUG(logger(), "Reached last item of playlist for prepareNextMedia");
        sendNoNextMediaCommand();
    }
    m_nextMediaPrepared = true;
}

VexaPlayLogicData PlayListPlayLogic::mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles)
{
    VEXA_LOG_ENTER(TRACE, logger(), "newRoles=" << newRoles);
    VEXA_LOG_ENTER(TRACE, logger(), "oldRoles=" << oldRoles);
    VexaPlayLogicControls controls;
    controls.setPause(true);
    if (m_currentPlayList) {
        controls.setNext_(true);
        controls.setPrevious(true);
    }
    const VexaMetaData meta = newRoles.mediaData().metaData();
    const bool seekTime = meta.contains(VexaMetaData::AllowSeekTime()) ? meta.allowSeekTime() : true;
    LOG4CPLUS_DEBUG(logger(), "Enabling seekTime control: " << boolText(seekTime));
    controls.setSeekTime(seekTime);
    const bool seekBytes = meta.contains(VexaMetaData::AllowSeekBytes()) ? meta.allowSeekBytes() : true;
    LOG4CPLUS_DEBUG(logger(), "Enabling seekBytes control: " << boolText(seekBytes));
    controls.setSeekBytes(seekBytes);
    controls.setPlayMode(playModesSupported());

    VexaPlayLogicData result = data();
    result.remove(VexaPlayLogicData::Error());
    result.remove(VexaPlayLogicData::StreamerError());
    result.setControls(controls);
    LOG4CPLUS_TRACE(logger(), "New playlogic data: " << result);

    m_nextMediaPrepared = false;
    takeAnnouncedNext();
    return result;
}

void PlayListPlayLogic::tryResumePlayback()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    takeAnnouncedNext();
    const VexaRoles track = getNextTrack();
    if (track.isEmpty())
        playbackEnded();
    else
        playTrackRoles(track);
}

void PlayListPlayLogic::takeAnnouncedNext()
{
    // The announced next media is the one that started: it is the play position now.
    if (m_currentPlayList && carriesSequenceNumber(m_nextTrackRoles)) {
        m_currentPlayList->setLastSequenceNumber(m_nextTrackRoles.value().i32());
        m_nextTrackRoles = VexaRoles();
    }
}

VexaPlayLogicPlayModesSupported PlayListPlayLogic::playModesSupported()
{
    VEXA_LOG_ENTER(TRACE, logger(), "");
    VexaPlayLogicPlayModesSupported modes;
    modes.setShuffle(true);
    modes.setShuffleRepeatAll(true);
    modes.setShuffleRepeatOne(true);
    modes.setRepeatOne(true);
    modes.setRepeatAll(true);
    LOG4CPLUS_TRACE(logger(), "Leave " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "PlayListsPlayLogic"));
    return modes;
}

void PlayListPlayLogic::changePlayModeInternal(const CMSetDataRequest& request)
{
    const VexaPlayerPlayMode::Enum newMode =
        VexaPlayLogicChangePlayModeArgs(request.value().toHash()).playMode();
    const int oldMode = playMode();
    VEXA_LOG_ENTER(DEBUG, logger(), "newValue=" << VexaPlayerPlayMode::toString(newMode));
    setPlayMode(newMode);
    // Shuffle is switched (and the order rebuilt) only when its part of the mode changes.
    if (VexaPlayerPlayMode::shuffles(newMode) != VexaPlayerPlayMode::shuffles(oldMode))
        setShuffleEnabled(VexaPlayerPlayMode::shuffles(newMode));
    setRepeatMode(RepeatMode(VexaPlayerPlayMode::repeat(newMode)));
    if (m_nextMediaPrepared)
        prepareNextMedia();
    request.reply().setFinished();
}
