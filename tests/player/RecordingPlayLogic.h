#pragma once

#include "TestPlayLogic.h"

#include <CMNodesWorker.h>
#include <CMRootWorker.h>

#include <QList>
#include <QMutex>
#include <QThread>

// The test module's play logic, noting every call the player causes. It runs
// on its worker's thread; the tests read the notes from theirs.
class RecordingPlayLogic : public TestPlayLogic
{
public:
    struct Event
    {
        Event(const QString& n = {}, const VexaRoles& o = {}, const VexaRoles& r = {}, qint64 t = -1, int e = 0, int p = -1)
            : name(n), oldRoles(o), newRoles(r), playTimeMs(t), errorCode(e), playType(p)
        {
        }
        QString name;
        VexaRoles oldRoles;
        VexaRoles newRoles;
        qint64 playTimeMs;
        int errorCode;
        int playType;
    };

    using TestPlayLogic::TestPlayLogic;

    QList<Event> eventsNamed(const QString& name = QString()) const
    {
        QMutexLocker lock(&m_mutex);
        QList<Event> list;
        for (const Event& event : m_events) {
            if (name.isNull() || event.name == name)
                list.append(event);
        }
        return list;
    }
    QStringList names() const
    {
        QStringList list;
        for (const Event& event : eventsNamed())
            list.append(event.name);
        return list;
    }

    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override
    {
        note({"play", {}, args.trackRoles(), -1, 0, args.type()});
        TestPlayLogic::playInternal(request, args);
    }
    void stopInternal(const CMSetDataRequest& request) override { note(Event("stop")); TestPlayLogic::stopInternal(request); }
    void previousInternal(const CMSetDataRequest& request) override
    {
        note(Event("previous")); TestPlayLogic::previousInternal(request);
    }
    void nextInternal(const CMSetDataRequest& request) override { note(Event("next")); TestPlayLogic::nextInternal(request); }
    void changePlayModeInternal(const CMSetDataRequest& request) override
    {
        note(Event("changePlayMode")); TestPlayLogic::changePlayModeInternal(request);
    }
    void prepareNextMedia() override { note({"prepareNextMedia", {}, {}, playTime()}); TestPlayLogic::prepareNextMedia(); }
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override
    {
        note({"mediaPlaybackStarted", oldRoles, newRoles});
        return TestPlayLogic::mediaPlaybackStarted(oldRoles, newRoles);
    }
    void tryResumePlayback() override
    {
        note({"tryResumePlayback", {}, {}, -1, data().streamerError().code()});
        TestPlayLogic::tryResumePlayback();
    }
    void playbackStopped() override { note(Event("playbackStopped")); }
    void playbackEnded() override { note(Event("playbackEnded")); TestPlayLogic::playbackEnded(); }

private:
    void note(const Event& event)
    {
        QMutexLocker lock(&m_mutex);
        m_events.append(event);
    }

    mutable QMutex m_mutex;
    QList<Event> m_events;
};

// A module as the host would run it: a worker on a thread of its own,
// registered at the root under prefix, with a recording play logic at
// <prefix>:/playlogic.
class PlayLogicThread
{
public:
    explicit PlayLogicThread(const QString& prefix)
    {
        m_thread.start();
        onThread([this, prefix]() {
            m_worker = new CMNodesWorker({{QStringLiteral("prefix"), prefix}}, prefix);
            m_logic = new RecordingPlayLogic(m_worker->nodes(), CMPath(prefix + QStringLiteral(":/playlogic")));
        });
        CMRoot()->registerWorker(prefix, m_worker);
    }
    ~PlayLogicThread()
    {
        CMRoot()->unregisterWorker(m_worker->prefix());
        // Objects of the thread are deleted there, after what it still had queued.
        onThread([this]() {
            delete m_logic;
            delete m_worker;
        });
        m_thread.quit();
        m_thread.wait();
    }
    PlayLogicThread(const PlayLogicThread&) = delete;
    PlayLogicThread& operator=(const PlayLogicThread&) = delete;

    RecordingPlayLogic* logic() const { return m_logic; }

private:
    template <typename F>
    void onThread(F f)
    {
        auto* context = new QObject;
        context->moveToThread(&m_thread);
        QMetaObject::invokeMethod(context, f, Qt::BlockingQueuedConnection);
        context->deleteLater();
    }

    QThread m_thread;
    CMNodesWorker* m_worker = nullptr;
    RecordingPlayLogic* m_logic = nullptr;
};
