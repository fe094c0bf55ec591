#pragma once

#include <CMAbstractWorker.h>

class Player;

// The player's paths under "player:": the user's controls at player:/control,
// the state at player:/status, player:/position, player:/playMode and
// player:/volume (the last two also settable). It reads and checks what clients send and hands
// it to the player; a value it cannot read is refused with a bad-request
// error, never passed on.
class PlayerWorker : public CMAbstractWorker
{
    Q_OBJECT
public:
    static QString prefix();

    explicit PlayerWorker(Player* player, QObject* parent = nullptr);

    QVariant getValue(const CMPath& path) override;
    void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply) override;
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override;

private:
    void control(const QVariant& value, const CMReply<QVariant>& reply);
    void setPlayMode(const QVariant& value, const CMReply<QVariant>& reply);
    void setVolume(const QVariant& value, const CMReply<QVariant>& reply);

    Player* m_player;
};
