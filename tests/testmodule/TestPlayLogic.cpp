#include "TestPlayLogic.h"

#include <CMError.h>
#include <VexaPaths.h>

TestPlayLogic::TestPlayLogic(CMNodes* nodes, const CMPath& path) : StreamerPlayLogic(nodes, path)
{
}

VexaPlayLogicPlayModesSupported TestPlayLogic::playModesSupported()
{
    VexaPlayLogicPlayModesSupported modes;
    modes.setRepeatAll(true);
    return modes;
}

void TestPlayLogic::playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args)
{
    const QVariantList tracks = args.mediaRoles().value(Tracks()).toList();
    if (args.index() < 0 || args.index() >= tracks.size()) {
        request.reply().setError(CMError(CMError::DefaultName(), QStringLiteral("No such track"),
                                         TrString(QStringLiteral("The container has no track %1").arg(args.index()))));
        return;
    }
    m_tracks = tracks;
    playAt(args.index());
    request.reply().setFinished();
}

void TestPlayLogic::stopInternal(const CMSetDataRequest& request)
{
    m_tracks.clear();
    m_current = -1;
    m_announced = -1;
    StreamerPlayLogic::stopInternal(request);
}

void TestPlayLogic::previousInternal(const CMSetDataRequest& request)
{
    // Late in a track "previous" starts it again.
    if (playTime() > VexaPreviousTrackTimeLimit())
        playAt(m_current);
    else if (m_current > 0)
        playAt(m_current - 1);
    request.reply().setFinished();
}

void TestPlayLogic::nextInternal(const CMSetDataRequest& request)
{
    const int next = nextIndex();
    if (next >= 0)
        playAt(next);
    request.reply().setFinished();
}

void TestPlayLogic::prepareNextMedia()
{
    const int next = nextIndex();
    if (next < 0) {
        sendNoNextMediaCommand();
        return;
    }
    m_announced = next;
    sendSetNextMediaCommand(trackAt(next), {});
}

VexaPlayLogicData TestPlayLogic::mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles)
{
    if (m_announced >= 0 && trackAt(m_announced) == newRoles)
        m_current = m_announced;
    m_announced = -1;
    m_failuresInRow = 0;
    VexaPlayLogicData data = StreamerPlayLogic::mediaPlaybackStarted(oldRoles, newRoles);
    VexaPlayLogicControls controls;
    controls.setPause(true);
    controls.setNext_(true);
    controls.setPrevious(true);
    controls.setSeekTime(true);
    controls.setPlayMode(playModesSupported());
    data.setControls(controls);
    return data;
}

void TestPlayLogic::tryResumePlayback()
{
    // The track that failed is the announced one when the player was handing over.
    if (m_announced >= 0)
        m_current = m_announced;
    m_announced = -1;
    const int next = nextIndex();
    if (next < 0 || ++m_failuresInRow >= m_tracks.size())
        playbackEnded();
    else
        playAt(next);
}

VexaRoles TestPlayLogic::trackAt(int index) const
{
    return index >= 0 && index < m_tracks.size() ? VexaRoles(m_tracks.at(index).toHash()) : VexaRoles();
}

int TestPlayLogic::nextIndex() const
{
    if (m_tracks.isEmpty())
        return -1;
    if (m_current + 1 < m_tracks.size())
        return m_current + 1;
    const VexaPlayerPlayMode::Enum mode = playMode();
    return mode == VexaPlayerPlayMode::RepeatAll || mode == VexaPlayerPlayMode::ShuffleRepeatAll ? 0 : -1;
}

void TestPlayLogic::playAt(int index)
{
    m_current = index;
    m_announced = -1;
    sendPlayCommand(trackAt(index), {});
}
