#include "PlayerWorker.h"

#include "Player.h"

#include <VexaVariant.h>

#include <cmath>

namespace {

CMError badRequest(const QString& message)
{
    return CMError(CMError::BadRequestName(), QStringLiteral("Invalid value"), TrString(message));
}

bool isAbsent(const QVariant& value)
{
    return !value.isValid() || value.userType() == QMetaType::Nullptr;
}

// Milliseconds as JSON gives them: a whole number or decimal text, not below zero.
bool readPositionMs(const QVariant& value, qint64* out)
{
    bool ok = false;
    qint64 ms = 0;
    switch (value.type()) {
    case QVariant::Int:
    case QVariant::LongLong:
    case QVariant::UInt:
        ms = value.toLongLong(&ok);
        break;
    case QVariant::Double: {
        const double d = value.toDouble();
        ok = std::trunc(d) == d && std::fabs(d) < 1e15;
        ms = qint64(d);
        break;
    }
    case QVariant::String:
        ms = value.toString().toLongLong(&ok);
        break;
    default:
        break;
    }
    if (!ok || ms < 0)
        return false;
    *out = ms;
    return true;
}

} // namespace

QString PlayerWorker::prefix()
{
    return Player::prefix();
}

PlayerWorker::PlayerWorker(Player* player, QObject* parent) : CMAbstractWorker(parent), m_player(player)
{
}

QVariant PlayerWorker::getValue(const CMPath& path)
{
    const QString base = path.base();
    if (base == Player::statusPath().base())
        return m_player->status();
    if (base == Player::positionPath().base())
        return m_player->positionValue().toVariant();
    if (base == Player::playModePath().base())
        return m_player->playModeValue().toVariant();
    if (base == Player::volumePath().base())
        return m_player->volumeValue().toVariant();
    return QVariant();
}

void PlayerWorker::setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply)
{
    invoke(path, value.toVariant(), reply);
}

void PlayerWorker::invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply)
{
    const QString base = path.base();
    if (base == Player::controlPath().base())
        control(value, reply);
    else if (base == Player::playModePath().base())
        setPlayMode(value, reply);
    else if (base == Player::volumePath().base())
        setVolume(value, reply);
    else if (base == Player::statusPath().base() || base == Player::positionPath().base())
        reply.setError(badRequest(path.toEncoded() + QStringLiteral(" is read-only; use player:/control")));
    else
        reply.setError(invalidPathError(path));
}

void PlayerWorker::control(const QVariant& value, const CMReply<QVariant>& reply)
{
    const QVariantHash hash = value.toHash();
    const QString control = hash.value(QStringLiteral("control")).toString();
    if (value.type() != QVariant::Hash || hash.value(QStringLiteral("control")).type() != QVariant::String) {
        reply.setError(badRequest(QStringLiteral("player:/control takes an object with a \"control\" name")));
        return;
    }
    if (control == QLatin1String("play")) {
        const QVariant container = hash.value(QStringLiteral("container"));
        const QVariant track = hash.value(QStringLiteral("track"));
        const QVariant indexValue = hash.value(QStringLiteral("index"));
        int index = 0;
        if (container.type() != QVariant::Hash) {
            reply.setError(badRequest(QStringLiteral("play needs the container's roles as an object")));
        } else if (!isAbsent(track) && track.type() != QVariant::Hash) {
            reply.setError(badRequest(QStringLiteral("play takes the track's roles as an object")));
        } else if (!isAbsent(indexValue) && (!VexaVariant::readInt(indexValue, &index) || index < 0)) {
            reply.setError(badRequest(QStringLiteral("index must be a whole number, not below 0")));
        } else {
            m_player->startContainer(VexaRoles(container.toHash()), VexaRoles(track.toHash()), index, 0, false, reply);
        }
    } else if (control == QLatin1String("pause")) {
        m_player->pause(reply);
    } else if (control == QLatin1String("resume")) {
        m_player->resume(reply);
    } else if (control == QLatin1String("seek")) {
        qint64 positionMs = 0;
        if (!readPositionMs(hash.value(QStringLiteral("positionMs")), &positionMs))
            reply.setError(badRequest(QStringLiteral("seek needs positionMs, a whole number of milliseconds")));
        else
            m_player->seek(positionMs, reply);
    } else if (control == QLatin1String("stop")) {
        m_player->sendCommand(VexaPlayLogicCommand::Stop, reply);
    } else if (control == QLatin1String("next")) {
        m_player->sendCommand(VexaPlayLogicCommand::Next, reply);
    } else if (control == QLatin1String("previous")) {
        m_player->sendCommand(VexaPlayLogicCommand::Previous, reply);
    } else {
        reply.setError(badRequest(QStringLiteral("Unknown control: ") + control));
    }
}

void PlayerWorker::setPlayMode(const QVariant& value, const CMReply<QVariant>& reply)
{
    const VexaValue mode(value.toHash());
    if (value.type() != QVariant::Hash || mode.type() != VexaValue::PlayerPlayMode() || !mode.isValid()) {
        reply.setError(badRequest(QStringLiteral("player:/playMode takes a playerPlayMode value")));
        return;
    }
    m_player->changePlayMode(mode.playerPlayMode(), reply);
}

void PlayerWorker::setVolume(const QVariant& value, const CMReply<QVariant>& reply)
{
    const VexaValue volume(value.toHash());
    int level = -1;
    if (value.type() != QVariant::Hash || volume.type() != VexaValue::I32()
        || !VexaVariant::readInt(volume.value(VexaValue::I32()), &level) || level < 0 || level > 100) {
        reply.setError(badRequest(QStringLiteral("player:/volume takes an i32_ value from 0 to 100")));
        return;
    }
    m_player->setVolume(level, reply);
}
