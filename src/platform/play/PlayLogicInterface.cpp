#include "PlayLogicInterface.h"

#include "NullPlayer.h"

#include <atomic>

namespace {

// Read from every module's thread, written by the host at start and end.
std::atomic<VexaPlayer*> g_player{nullptr};

} // namespace

VexaPlayer* PlayLogicInterface::playerInstance()
{
    static NullPlayer nullPlayer;
    VexaPlayer* player = g_player.load();
    return player ? player : &nullPlayer;
}

void PlayLogicInterface::setPlayerInstance(VexaPlayer* player)
{
    g_player.store(player);
}
