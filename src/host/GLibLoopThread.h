#pragma once

#include <glib.h>

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// A thread of its own running a GLib main loop on a context of its own:
// GStreamer's bus and everything the GStreamer player does to its pipeline
// run there, never on a caller's thread. Jobs posted from any thread run in
// the order posted; timers fire on the same thread.
class GLibLoopThread
{
public:
    GLibLoopThread();
    // Stops the loop (jobs not yet run are dropped) and joins the thread.
    ~GLibLoopThread();

    GLibLoopThread(const GLibLoopThread&) = delete;
    GLibLoopThread& operator=(const GLibLoopThread&) = delete;

    GMainContext* context() const { return m_context; }
    void post(std::function<void()> job);
    // Runs fn on the thread msecs from now, and again every msecs while it returns true.
    void schedule(unsigned msecs, std::function<bool()> fn);
    // Attaches a source (a bus watch) to the loop; the loop takes it over.
    void attach(GSource* source);
    // Quits the loop and joins the thread; later jobs are dropped.
    void stop();

private:
    void drain();

    GMainContext* m_context;
    GMainLoop* m_loop;
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_jobs;
    bool m_drainScheduled = false;
    std::thread m_thread;
};
