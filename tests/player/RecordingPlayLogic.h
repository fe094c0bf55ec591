#pragma once

#include "TestPlayLogic.h"

#include <QList>
#include <QMutex>

// The test module's play logic, noting every call the player causes. It runs
// on its worker's thread; the tests read the notes from theirs.
class RecordingPlayLogic : public TestPlayLogic
{
public:
    struct Event
    {
        QString name;
        VexaRoles oldRoles;
        VexaRoles newRoles;
        qint64 playTimeMs = -1;
        int errorCode = 0;
        int playType = -1;
    };

    using TestPlayLogic::TestPlayLogic;

    QList<Event> events() const
    {
        QMutexLocker lock(&m_mutex);
        return m_events;
    }
    QStringList names() const
    {
        QStringList list;
        for (const Event& event : events())
            list.append(event.name);
        return list;
    }
    QList<Event> eventsNamed(const QString& name) const
    {
        QList<Event> list;
        for (const Event& event : events()) {
            if (event.name == name)
                list.append(event);
        }
        return list;
    }

    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override
    {
        Event event = named("play");
        event.newRoles = args.trackRoles();
        event.playType = args.type();
        note(event);
        TestPlayLogic::playInternal(request, args);
    }
    void stopInternal(const CMSetDataRequest& request) override
    {
        note(named("stop"));
        TestPlayLogic::stopInternal(request);
    }
    void previousInternal(const CMSetDataRequest& request) override
    {
        note(named("previous"));
        TestPlayLogic::previousInternal(request);
    }
    void nextInternal(const CMSetDataRequest& request) override
    {
        note(named("next"));
        TestPlayLogic::nextInternal(request);
    }
    void changePlayModeInternal(const CMSetDataRequest& request) override
    {
        note(named("changePlayMode"));
        TestPlayLogic::changePlayModeInternal(request);
    }
    void prepareNextMedia() override
    {
        Event event = named("prepareNextMedia");
        event.playTimeMs = playTime();
        note(event);
        TestPlayLogic::prepareNextMedia();
    }
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override
    {
        Event event = named("mediaPlaybackStarted");
        event.oldRoles = oldRoles;
        event.newRoles = newRoles;
        note(event);
        return TestPlayLogic::mediaPlaybackStarted(oldRoles, newRoles);
    }
    void tryResumePlayback() override
    {
        Event event = named("tryResumePlayback");
        event.errorCode = data().streamerError().code();
        note(event);
        TestPlayLogic::tryResumePlayback();
    }
    void playbackStopped() override { note(named("playbackStopped")); }
    void playbackEnded() override
    {
        note(named("playbackEnded"));
        TestPlayLogic::playbackEnded();
    }

private:
    static Event named(const QString& name)
    {
        Event event;
        event.name = name;
        return event;
    }
    void note(const Event& event)
    {
        QMutexLocker lock(&m_mutex);
        m_events.append(event);
    }

    mutable QMutex m_mutex;
    QList<Event> m_events;
};
