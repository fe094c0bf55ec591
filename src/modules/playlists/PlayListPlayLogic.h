#pragma once

#include "StreamerPlayLogic.h"
#include "VexaRoles.h"

#include <QList>
#include <QString>
#include <QVector>

class CMNodes;
class PlayListBase;
class PlayListManager;
class PlayListWorker;

// The play logic of playlists: which entry of the current playlist plays now,
// next and before, with shuffle, repeat-all and repeat-one. The playlist's
// lastPlayedIndex is the play position; it follows every change of the list.
class PlayListPlayLogic : public StreamerPlayLogic
{
    Q_OBJECT

public:
    // The same numbers as VexaPlayerPlayMode::Repeat.
    enum RepeatMode { RepeatNone = 0, RepeatOne = 1, RepeatAll = 2 };

    // parent is kept in the signature on purpose but ignored: the play logic lives as long as the process.
    PlayListPlayLogic(PlayListWorker* worker, PlayListManager* manager, QObject* parent);
    // A play logic registered in nodes of no particular worker: all it needs
    // of a worker is where its node lives.
    PlayListPlayLogic(CMNodes* nodes, PlayListManager* manager);
    ~PlayListPlayLogic() override;

    VexaPlayLogicPlayModesSupported playModesSupported() override;
    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override;
    void stopInternal(const CMSetDataRequest& request) override;
    void previousInternal(const CMSetDataRequest& request) override;
    void nextInternal(const CMSetDataRequest& request) override;
    void changePlayModeInternal(const CMSetDataRequest& request) override;
    void prepareNextMedia() override;
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override;
    void tryResumePlayback() override;

    void setCurrentPlayList(PlayListBase* pl);
    void setRepeatMode(RepeatMode mode);
    VexaRoles getCurrentTrack();
    VexaRoles getTrackRelative(int offset);
    VexaRoles getTrackAbsolute(int index);
    VexaRoles getNextTrack();
    VexaRoles getPreviousTrack();
    void updateSequenceNumberInData();

    void setShuffleEnabled(bool enabled);
    void initShuffle(int startItem);
    void randomizeShuffleItems(int from);
    int getNextShuffleItem();
    int getPrevShuffleItem();
    void debugShuffleItems();

    void startPlayback(const CMPath& path, int index, CMSetDataRequest request);
    void playTrackRoles(VexaRoles roles);

    // Read access for the play logic's observers (and its tests).
    PlayListBase* currentPlayList() const { return m_currentPlayList; }
    bool shuffleEnabled() const { return m_shuffleEnabled; }
    RepeatMode repeatMode() const { return m_repeatMode; }
    const QVector<int>& shuffleSequence() const { return m_shuffleSeq; }
    int shuffleCurrentIndex() const { return m_shuffleCurIndex; }

public slots:
    void on_playlist_deleted(int plid);
    void on_currentPlayList_cleared();
    void on_currentPlayList_itemsAdded(QString positionStr, int firstSeqNum, int count);
    void on_currentPlayList_itemsRemoved(QList<int> indices, int lastSeqNumBeforeRemove);
    void on_currentPlayList_itemMoved(int from, int to);
    void on_currentPlayList_shuffleChanged(bool newValue);
    void on_currentPlayList_repeatAllChanged(bool newValue);

private:
    // The play position follows the announced next entry once it started.
    void takeAnnouncedNext();
    // The shuffle order follows the list's changes.
    void shuffleItemsRemoved(const QList<int>& indices);
    void shuffleItemMoved(int from, int to);
    void shuffleItemsAdded(int position, int firstSeqNum, int count);

    // Kept on purpose: the owning worker, unread since nodes() is taken at construction.
    PlayListWorker* m_worker = nullptr;
    PlayListManager* m_manager;
    PlayListBase* m_currentPlayList = nullptr;
    bool m_shuffleEnabled = false;
    RepeatMode m_repeatMode = RepeatNone;
    QVector<int> m_shuffleSeq;
    int m_shuffleCurIndex = -1;
    VexaRoles m_nextTrackRoles;
    int m_errorCount = 0;
    bool m_nextMediaPrepared = false;
};
