#pragma once

#include <StreamerPlayLogic.h>

#include <QVariantList>

// A play logic for the tests of the player: it plays the tracks listed under
// "tracks" in the container's roles, from the index it is given, one after
// another, wrapping around in the repeat-all modes. A track that fails to
// start is skipped; playback ends when every track has failed in a row.
class TestPlayLogic : public StreamerPlayLogic
{
public:
    static QString Tracks() { return QStringLiteral("tracks"); }

    TestPlayLogic(CMNodes* nodes, const CMPath& path);

    VexaPlayLogicPlayModesSupported playModesSupported() override;
    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override;
    void stopInternal(const CMSetDataRequest& request) override;
    void previousInternal(const CMSetDataRequest& request) override;
    void nextInternal(const CMSetDataRequest& request) override;
    void prepareNextMedia() override;
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override;
    void tryResumePlayback() override;

private:
    VexaRoles trackAt(int index) const;
    // The index after the current one; -1 when playback is to end there.
    int nextIndex() const;
    void playAt(int index);

    QVariantList m_tracks;
    int m_current = -1;
    // The track announced to follow the current one, until it starts.
    int m_announced = -1;
    int m_failuresInRow = 0;
};
