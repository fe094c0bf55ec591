#include "GLibLoopThread.h"

namespace {

using Timer = std::function<bool()>;

gboolean runTimer(gpointer data)
{
    return (*static_cast<Timer*>(data))() ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void deleteTimer(gpointer data)
{
    delete static_cast<Timer*>(data);
}

} // namespace

GLibLoopThread::GLibLoopThread() : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context, FALSE))
{
    m_thread = std::thread([this]() {
        g_main_context_push_thread_default(m_context);
        g_main_loop_run(m_loop);
        g_main_context_pop_thread_default(m_context);
    });
}

GLibLoopThread::~GLibLoopThread()
{
    stop();
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void GLibLoopThread::post(std::function<void()> job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_drainScheduled)
        return;
    m_drainScheduled = true;
    // Before the bus's next message: what a job changes (a pipeline stopped
    // and its bus flushed) must hold for every message that follows it.
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_HIGH);
    g_source_set_callback(source, runTimer, new Timer([this]() {
        drain();
        return false;
    }), deleteTimer);
    attach(source);
}

void GLibLoopThread::schedule(unsigned msecs, std::function<bool()> fn)
{
    GSource* source = msecs ? g_timeout_source_new(msecs) : g_idle_source_new();
    g_source_set_callback(source, runTimer, new Timer(std::move(fn)), deleteTimer);
    attach(source);
}

void GLibLoopThread::attach(GSource* source)
{
    g_source_attach(source, m_context);
    g_source_unref(source);
}

void GLibLoopThread::stop()
{
    if (!m_thread.joinable())
        return;
    // As a job, so that a loop that has not begun to run yet still ends.
    post([this]() { g_main_loop_quit(m_loop); });
    m_thread.join();
}

void GLibLoopThread::drain()
{
    std::deque<std::function<void()>> jobs;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        jobs.swap(m_jobs);
        m_drainScheduled = false;
    }
    for (const std::function<void()>& job : jobs)
        job();
}
