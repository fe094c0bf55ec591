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

#include <cstdlib>
#include <ctime>

#define PLAYLOGIC_ENTER(message)                                                                                       \
    LOG4CPLUS_TRACE(logger(), "Enter " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "PlayListsPlayLogic") << ": "     \
                                       << message)

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("PlayListsPlayLogic"));
}

bool carriesSequenceNumber(const VexaRoles& roles)
{
    return roles.value().contains(VexaValue::I32());
}

const char* boolText(bool value)
{
    return value ? "true" : "false";
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
    PLAYLOGIC_ENTER("");
    vexaConnect(m_manager, "2playlistDeleted(int)", this, "1on_playlist_deleted(int)", Qt::AutoConnection);
}

PlayListPlayLogic::~PlayListPlayLogic() = default;

void PlayListPlayLogic::setCurrentPlayList(PlayListBase* pl)
{
    PLAYLOGIC_ENTER("pl=" << (pl ? pl->getUid() : -1));
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
    PLAYLOGIC_ENTER("");
    return getTrackRelative(0);
}

VexaRoles PlayListPlayLogic::getTrackAbsolute(int index)
{
    PLAYLOGIC_ENTER("index=" << index);
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
    PLAYLOGIC_ENTER("offset=" << offset);
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
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("");
    playerInstance()->stop(VexaPlayLogicStopReason::Stopped);
}

void PlayListPlayLogic::on_currentPlayList_itemsRemoved(QList<int> indices, int lastSeqNumBeforeRemove)
{
    PLAYLOGIC_ENTER("indices.size()=" << indices.size() << " lastSeqNum=" << lastSeqNumBeforeRemove);
    if (m_currentPlayList->getSize() == 0) {
        on_currentPlayList_cleared();
        return;
    }
    if (m_shuffleEnabled) {
        // Each removed number is matched against the order as the earlier
        // ones of this call left it.
        for (int removed : indices) {
            int j = 0;
            while (j < m_shuffleSeq.size()) {
                if (m_shuffleSeq.at(j) == removed) {
                    m_shuffleSeq.remove(j);
                    if (m_shuffleCurIndex >= j)
                        --m_shuffleCurIndex;
                } else {
                    if (m_shuffleSeq.at(j) > removed)
                        --m_shuffleSeq[j];
                    ++j;
                }
            }
        }
    }
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
    PLAYLOGIC_ENTER("from=" << from << " to=" << to);
    if (m_shuffleEnabled && !m_shuffleSeq.isEmpty()) {
        for (int& element : m_shuffleSeq) {
            if (element == from)
                element = to;
            else if (element == to)
                element = from;
        }
    }
    updateSequenceNumberInData();
}

void PlayListPlayLogic::on_currentPlayList_itemsAdded(QString positionStr, int firstSeqNum, int count)
{
    PLAYLOGIC_ENTER("pos=" << positionStr << " count=" << count
                           << " lastSeq=" << (m_currentPlayList ? m_currentPlayList->getLastSequenceNumber() : -1));
    const int position = VexaPlayListAddPosition::fromString(positionStr);
    // Entries inserted right after the current one change what follows it.
    if (position == VexaPlayListAddPosition::Next && carriesSequenceNumber(m_nextTrackRoles))
        prepareNextMedia();
    if (!m_shuffleEnabled)
        return;
    if (position == VexaPlayListAddPosition::Now || position == VexaPlayListAddPosition::Next) {
        for (int& element : m_shuffleSeq) {
            if (element >= firstSeqNum)
                element += count;
        }
        for (int k = 0; k < count; ++k)
            m_shuffleSeq.insert(m_shuffleCurIndex + 1 + k, firstSeqNum + k);
    } else if (position == VexaPlayListAddPosition::Append) {
        for (int k = 0; k < count; ++k) {
            m_shuffleSeq.append(firstSeqNum + k);
            randomizeShuffleItems(m_shuffleCurIndex + 1);
        }
    } else {
        LOG4CPLUS_ERROR(logger(), "Unknown position specifier: " << VexaPlayListAddPosition::toString(position));
    }
}

void PlayListPlayLogic::on_currentPlayList_shuffleChanged(bool newValue)
{
    PLAYLOGIC_ENTER("newValue=" << boolText(newValue));
    if (m_shuffleEnabled == newValue)
        return;
    const int mode = playMode();
    if (mode == VexaPlayerPlayMode::RepeatAll || mode == VexaPlayerPlayMode::ShuffleRepeatAll)
        setPlayMode(newValue ? VexaPlayerPlayMode::ShuffleRepeatAll : VexaPlayerPlayMode::RepeatAll);
    else if (mode == VexaPlayerPlayMode::RepeatOne || mode == VexaPlayerPlayMode::ShuffleRepeatOne)
        setPlayMode(newValue ? VexaPlayerPlayMode::ShuffleRepeatOne : VexaPlayerPlayMode::RepeatOne);
    else if (mode == VexaPlayerPlayMode::Normal || mode == VexaPlayerPlayMode::Shuffle)
        setPlayMode(newValue ? VexaPlayerPlayMode::Shuffle : VexaPlayerPlayMode::Normal);
    else
        setPlayMode(VexaPlayerPlayMode::Enum(mode));
}

void PlayListPlayLogic::on_currentPlayList_repeatAllChanged(bool newValue)
{
    PLAYLOGIC_ENTER("newValue=" << boolText(newValue));
    if (!newValue && m_repeatMode == RepeatAll)
        setPlayMode(m_shuffleEnabled ? VexaPlayerPlayMode::Shuffle : VexaPlayerPlayMode::Normal);
    else if (newValue && m_repeatMode != RepeatAll)
        setPlayMode(m_shuffleEnabled ? VexaPlayerPlayMode::ShuffleRepeatAll : VexaPlayerPlayMode::RepeatAll);
}

void PlayListPlayLogic::setShuffleEnabled(bool enabled)
{
    PLAYLOGIC_ENTER("enabled=" << boolText(enabled));
    m_shuffleEnabled = enabled;
    if (!m_currentPlayList)
        return;
    m_currentPlayList->setShuffle(enabled);
    if (enabled)
        initShuffle(m_currentPlayList->getLastSequenceNumber());
}

void PlayListPlayLogic::initShuffle(int startItem)
{
    PLAYLOGIC_ENTER("startItem: " << startItem);
    if (!m_currentPlayList) {
        m_shuffleSeq.clear();
        m_shuffleCurIndex = -1;
        return;
    }
    const int size = m_currentPlayList->getSize();
    if (size < 1) {
        LOG4CPLUS_TRACE(logger(), "size <= 0");
        return;
    }
    m_shuffleSeq.resize(size);
    for (int i = 0; i < size; ++i)
        m_shuffleSeq[i] = i;
    randomizeShuffleItems(0);
    if (startItem < 0) {
        debugShuffleItems();
        m_shuffleCurIndex = 0;
        return;
    }
    // The entry that plays when shuffle starts comes first, the cursor on it.
    const int index = m_shuffleSeq.indexOf(startItem);
    LOG4CPLUS_TRACE(logger(), "index of startItem in sequence: " << index);
    if (index >= 0) {
        m_shuffleSeq.remove(index);
        m_shuffleSeq.prepend(startItem);
    }
    debugShuffleItems();
    m_shuffleCurIndex = 0;
}

void PlayListPlayLogic::randomizeShuffleItems(int from)
{
    PLAYLOGIC_ENTER("from: " << from);
    srand(time(nullptr));
    if (from < 0 || from >= m_shuffleSeq.size())
        return;
    for (int i = from + 1; i < m_shuffleSeq.size(); ++i) {
        const int j = from + rand() % (i - from + 1);
        if (j != i)
            std::swap(m_shuffleSeq[i], m_shuffleSeq[j]);
    }
}

int PlayListPlayLogic::getNextShuffleItem()
{
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex before next: " << m_shuffleCurIndex);
    int result = -1;
    if (m_shuffleSeq.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), "error: m_shuffleSeq.size: " << m_shuffleSeq.size());
    } else if (m_shuffleCurIndex >= 0 && m_shuffleCurIndex + 1 < m_shuffleSeq.size()) {
        result = m_shuffleSeq.at(++m_shuffleCurIndex);
    } else if (m_repeatMode == RepeatAll) {
        // A new pass gets a new order.
        m_shuffleCurIndex = 0;
        randomizeShuffleItems(0);
        result = m_shuffleSeq.at(0);
        LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex is set to first item in m_shuffleSeq");
    }
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex after next: " << m_shuffleCurIndex);
    LOG4CPLUS_TRACE(logger(), "index: " << result);
    return result;
}

int PlayListPlayLogic::getPrevShuffleItem()
{
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex before prev: " << m_shuffleCurIndex);
    int result = -1;
    if (m_shuffleSeq.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), "error: m_shuffleSeq.size: " << m_shuffleSeq.size());
    } else if (m_shuffleCurIndex > 0 && m_shuffleCurIndex < m_shuffleSeq.size()) {
        result = m_shuffleSeq.at(--m_shuffleCurIndex);
    } else if (m_repeatMode == RepeatAll) {
        m_shuffleCurIndex = m_shuffleSeq.size() - 1;
        result = m_shuffleSeq.last();
        LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex is set to last item in m_shuffleSeq");
    }
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex after prev: " << m_shuffleCurIndex);
    LOG4CPLUS_TRACE(logger(), "index: " << result);
    return result;
}

void PlayListPlayLogic::debugShuffleItems()
{
    PLAYLOGIC_ENTER("m_shuffleSeq.size(): " << m_shuffleSeq.size());
    for (int i = 0; i < m_shuffleSeq.size(); ++i)
        LOG4CPLUS_TRACE(logger(), "m_shuffleSeq entry: #" << i << " " << m_shuffleSeq.at(i));
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
    PLAYLOGIC_ENTER("args=" << args);
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
    LOG4CPLUS_INFO(logger(), "Enter " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "PlayListsPlayLogic")
                                      << ": " << "pl=" << path << " track=" << index);
    PlayListBase* pl = nullptr;
    if (path.startsWith(VexaPlayListPlGetItemsPath())) {
        const int uid = path.lastSegment().toInt();
        if (uid == 0) {
            LOG4CPLUS_ERROR(logger(), "playInternal called for invalid playlist container " << path);
            request.reply().setError(CMError(QStringLiteral("PlayList Error"), CMError::DefaultTitle(),
                                             TrString(Language::ntr(trExtractContext(__PRETTY_FUNCTION__),
                                                                    QStringLiteral("Play called on invalid playlist container")))));
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
    if (pl->getShuffle() && pl->getRepeatAll())
        setPlayMode(VexaPlayerPlayMode::ShuffleRepeatAll);
    else if (pl->getShuffle())
        setPlayMode(VexaPlayerPlayMode::Shuffle);
    else if (pl->getRepeatAll())
        setPlayMode(VexaPlayerPlayMode::RepeatAll);
    else
        setPlayMode(VexaPlayerPlayMode::Normal);
    LOG4CPLUS_DEBUG(logger(), "index=" << index << " size=" << pl->getSize());
    setShuffleEnabled(pl->getShuffle());
    setRepeatMode(pl->getRepeatAll() ? RepeatAll : RepeatNone);
    playTrackRoles(getTrackAbsolute(index));
}

void PlayListPlayLogic::nextInternal(const CMSetDataRequest& request)
{
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("");
    setCurrentPlayList(nullptr);
    StreamerPlayLogic::stopInternal(request);
}

void PlayListPlayLogic::prepareNextMedia()
{
    PLAYLOGIC_ENTER("");
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
    PLAYLOGIC_ENTER("newRoles=" << newRoles);
    PLAYLOGIC_ENTER("oldRoles=" << oldRoles);
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
    // The announced next media is the one that started: it is the play position now.
    if (m_currentPlayList && carriesSequenceNumber(m_nextTrackRoles)) {
        m_currentPlayList->setLastSequenceNumber(m_nextTrackRoles.value().i32());
        m_nextTrackRoles = VexaRoles();
    }
    return result;
}

void PlayListPlayLogic::tryResumePlayback()
{
    PLAYLOGIC_ENTER("");
    if (m_currentPlayList && carriesSequenceNumber(m_nextTrackRoles)) {
        m_currentPlayList->setLastSequenceNumber(m_nextTrackRoles.value().i32());
        m_nextTrackRoles = VexaRoles();
    }
    const VexaRoles track = getNextTrack();
    if (track.isEmpty())
        playbackEnded();
    else
        playTrackRoles(track);
}

VexaPlayLogicPlayModesSupported PlayListPlayLogic::playModesSupported()
{
    PLAYLOGIC_ENTER("");
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
    LOG4CPLUS_DEBUG(logger(), "Enter " << dbglog_scopedFunction(__PRETTY_FUNCTION__, "PlayListsPlayLogic") << ": "
                                       << "newValue=" << VexaPlayerPlayMode::toString(newMode));
    setPlayMode(newMode);
    // Shuffle is switched (and the order rebuilt) only when its part of the mode changes.
    const bool oldShuffle = oldMode == VexaPlayerPlayMode::Shuffle || oldMode == VexaPlayerPlayMode::ShuffleRepeatOne
        || oldMode == VexaPlayerPlayMode::ShuffleRepeatAll;
    switch (newMode) {
    case VexaPlayerPlayMode::Normal:
    case VexaPlayerPlayMode::RepeatOne:
    case VexaPlayerPlayMode::RepeatAll:
        if (oldShuffle)
            setShuffleEnabled(false);
        break;
    case VexaPlayerPlayMode::Shuffle:
    case VexaPlayerPlayMode::ShuffleRepeatOne:
    case VexaPlayerPlayMode::ShuffleRepeatAll:
        if (!oldShuffle)
            setShuffleEnabled(true);
        break;
    }
    switch (newMode) {
    case VexaPlayerPlayMode::Normal:
    case VexaPlayerPlayMode::Shuffle:
        setRepeatMode(RepeatNone);
        break;
    case VexaPlayerPlayMode::RepeatOne:
    case VexaPlayerPlayMode::ShuffleRepeatOne:
        setRepeatMode(RepeatOne);
        break;
    case VexaPlayerPlayMode::RepeatAll:
    case VexaPlayerPlayMode::ShuffleRepeatAll:
        setRepeatMode(RepeatAll);
        break;
    }
    if (m_nextMediaPrepared)
        prepareNextMedia();
    request.reply().setFinished();
}
