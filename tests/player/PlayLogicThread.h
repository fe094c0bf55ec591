#pragma once

#include <QThread>

class CMNodesWorker;
class RecordingPlayLogic;

// A module as the host would run it, for the player's tests: a worker on a
// thread of its own, registered at the root under prefix, with a recording
// play logic at <prefix>:/playlogic.
class PlayLogicThread
{
public:
    explicit PlayLogicThread(const QString& prefix);
    ~PlayLogicThread();

    PlayLogicThread(const PlayLogicThread&) = delete;
    PlayLogicThread& operator=(const PlayLogicThread&) = delete;

    RecordingPlayLogic* logic() const { return m_logic; }
    QThread* thread() { return &m_thread; }

private:
    QThread m_thread;
    CMNodesWorker* m_worker = nullptr;
    RecordingPlayLogic* m_logic = nullptr;
};
