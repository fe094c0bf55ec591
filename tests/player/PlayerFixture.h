#pragma once

#include "Player.h"
#include "PlayerWorker.h"
#include "RecordingPlayLogic.h"

#include <CMRootWorker.h>
#include <PlayLogicInterface.h>

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>

#include <functional>
#include <memory>

inline const QString kLogicPrefix = QStringLiteral("fakeplay");
inline const CMPath kLogicPath(QStringLiteral("fakeplay:/playlogic"));

inline VexaRoles track(const QString& title, int seconds, const QString& uri = QString())
{
    const QVariantHash resource{{"uri", uri.isEmpty() ? "test://" + title : uri}, {"duration", seconds}};
    return VexaRoles({{"title", title}, {"type", "audio"}, {"mediaData", QVariantHash{{"resources", QVariantList{resource}}}}});
}

inline VexaRoles container(const QList<VexaRoles>& tracks, const CMPath& playLogicPath = kLogicPath)
{
    QVariantList list;
    for (const VexaRoles& t : tracks)
        list.append(t.toVariant());
    const QVariantHash meta{{"playLogicPath", playLogicPath.toEncoded()}};
    return VexaRoles({{"title", "Album"}, {"type", "container"}, {"mediaData", QVariantHash{{"metaData", meta}}},
                      {TestPlayLogic::Tracks(), list}});
}

inline QVariantHash playControl(const VexaRoles& containerRoles, int index)
{
    const QVariantList tracks = containerRoles.value(TestPlayLogic::Tracks()).toList();
    return {{"control", "play"},
            {"container", containerRoles.toVariant()},
            {"track", tracks.value(index)},
            {"index", index}};
}

inline bool waitFor(const std::function<bool()>& done, int msecs = 10000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > msecs)
            return false;
        QThread::msleep(1);
    }
    return true;
}

inline QString titleOf(const QVariant& roles)
{
    return VexaRoles(roles.toHash()).title();
}

// A player of either kind under test, with the test module's recording play
// logic on a worker thread of its own and every value change noted.
class PlayerFixture : public ::testing::Test
{
protected:
    // The player under test.
    virtual std::unique_ptr<Player> makePlayer() = 0;

    struct ValueEvent
    {
        CMPath path;
        VexaValue newValue;
        VexaValue oldValue;
    };

    void SetUp() override
    {
        m_player = makePlayer();
        PlayLogicInterface::setPlayerInstance(m_player.get());
        m_worker = std::make_unique<PlayerWorker>(m_player.get());
        CMRoot()->registerWorker(PlayerWorker::prefix(), m_worker.get());
        m_logicThread = std::make_unique<PlayLogicThread>(kLogicPrefix);
        QObject::connect(
            CMRoot(), &CMRootWorker::valueChanged, &m_listener,
            [this](const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue) {
                QMutexLocker lock(&m_valuesMutex);
                m_values.append({path, newValue, oldValue});
            },
            Qt::DirectConnection);
    }

    void TearDown() override
    {
        QObject::disconnect(CMRoot(), nullptr, &m_listener, nullptr);
        m_logicThread.reset();
        CMRoot()->unregisterWorker(PlayerWorker::prefix());
        m_worker.reset();
        m_player.reset();
        EXPECT_NE(PlayLogicInterface::playerInstance(), nullptr);
    }

    RecordingPlayLogic* logic() const { return m_logicThread->logic(); }

    static CMReply<QVariant> invoke(const CMPath& path, const QVariant& value)
    {
        const CMReply<QVariant> reply;
        CMRoot()->invoke(path, value, reply);
        EXPECT_TRUE(reply.waitForFinished(10000)) << path.toEncoded().toStdString();
        return reply;
    }
    static CMReply<QVariant> control(const QVariantHash& value) { return invoke(Player::controlPath(), value); }
    static CMReply<QVariant> control(const QString& name, const QVariantHash& arguments = {})
    {
        QVariantHash value = arguments;
        value.insert("control", name);
        return control(value);
    }

    static QVariantHash status() { return CMRoot()->getValue(Player::statusPath()).toHash(); }
    static QString state() { return status().value("state").toString(); }
    static qint64 position() { return VexaValue(CMRoot()->getValue(Player::positionPath()).toHash()).i64_(); }
    bool waitForState(const QString& wanted) { return waitFor([&]() { return state() == wanted; }); }
    bool waitForEvent(const QString& name, int count = 1)
    {
        return waitFor([&]() { return logic()->eventsNamed(name).size() >= count; });
    }

    // The play logic heard each track start after the one before it, each
    // asking for its successor, and then the end.
    void expectPlayedThrough(const QList<VexaRoles>& tracks) const
    {
        QStringList names = {"play"};
        for (int i = 0; i < tracks.size(); ++i)
            names << "mediaPlaybackStarted" << "prepareNextMedia";
        EXPECT_EQ(logic()->names(), names << "playbackEnded");
        const QList<RecordingPlayLogic::Event> started = logic()->eventsNamed("mediaPlaybackStarted");
        ASSERT_EQ(started.size(), tracks.size());
        for (int i = 0; i < tracks.size(); ++i) {
            EXPECT_EQ(started[i].newRoles, tracks[i]) << i;
            EXPECT_EQ(started[i].oldRoles, i ? tracks[i - 1] : VexaRoles()) << i;
        }
    }

    QList<ValueEvent> valuesAt(const CMPath& path) const
    {
        QMutexLocker lock(&m_valuesMutex);
        QList<ValueEvent> found;
        for (const ValueEvent& event : m_values) {
            if (event.path == path)
                found.append(event);
        }
        return found;
    }

    std::unique_ptr<Player> m_player;
    std::unique_ptr<PlayerWorker> m_worker;
    std::unique_ptr<PlayLogicThread> m_logicThread;
    QObject m_listener;
    mutable QMutex m_valuesMutex;
    QList<ValueEvent> m_values;
};
