#pragma once

#include "../../play/FakePlayer.h"
#include "Database.h"
#include "TestSupport.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListPlayLogic.h"

#include <CMNodes.h>

#include <gtest/gtest.h>

// The module's play logic over a real store in a temporary directory, with a
// player that only notes what it is asked.
class PlayLogicFixture : public ::testing::Test
{
protected:
    PlayLogicFixture();
    ~PlayLogicFixture() override;

    // A new playlist holding t0..t<size-1> with the stored flags and play position given.
    PlayListBase* list(int size, bool shuffle = false, bool repeatAll = false, int lastPlayed = -1);
    // The player's play command for pl at index; the request's reply.
    CMVoidReply start(PlayListBase* pl, int index);
    CMVoidReply play(const VexaRoles& container, int index, int type = 1, const VexaRoles& track = VexaRoles());
    // The player's callbacks, as the player sends them.
    void started(const VexaRoles& track);
    void failed(int code);
    CMVoidReply changeMode(VexaPlayerPlayMode::Enum mode);

    // Sequence numbers of the tracks the player was handed with op, oldest first (-1: none).
    QList<int> sent(const QString& op) const;
    int lastSent(const QString& op) const;
    int count(const QString& op) const { return m_player.callsOf(op).size(); }
    static int seqOf(const VexaRoles& roles);
    // The player-visible play mode as last published.
    int publishedMode() const;

    WorkDir m_dir;
    LogCapture m_log{"PlayListsPlayLogic"};
    Database m_db{0, false};
    PlayListManager m_manager{&m_db};
    CMNodes m_nodes;
    FakePlayer m_player;
    PlayListPlayLogic m_logic{&m_nodes, &m_manager};
};
