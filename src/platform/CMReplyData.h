#pragma once

#include "CMError.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <functional>
#include <vector>

// The shared state of one reply: completed once, with data or with an error,
// from any thread; waited for and watched from any other.
template <typename T>
class CMReplyData
{
public:
    // Completes with data; false when the reply had already completed.
    bool setData(const T& data) { return complete(&data, nullptr); }
    // Completes with an error; false when the reply had already completed.
    bool setError(const CMError& error) { return complete(nullptr, &error); }

    bool isFinished() const
    {
        QMutexLocker lock(&m_mutex);
        return m_finished;
    }
    bool hasError() const
    {
        QMutexLocker lock(&m_mutex);
        return m_hasError;
    }
    T data() const
    {
        QMutexLocker lock(&m_mutex);
        return m_data;
    }
    CMError error() const
    {
        QMutexLocker lock(&m_mutex);
        return m_error;
    }

    // Waits until the reply completed or msecs passed (-1: no limit); true when completed.
    bool waitForFinished(int msecs = -1)
    {
        QMutexLocker lock(&m_mutex);
        const QDeadlineTimer deadline(msecs < 0 ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(msecs));
        while (!m_finished) {
            if (!m_cond.wait(&m_mutex, deadline))
                return m_finished;
        }
        return true;
    }

    // A request that waits in a worker's queue can be withdrawn until the
    // worker takes it up: whoever stops waiting for the reply cancels it, the
    // worker starts it. Only a queue that asks start() marks its requests
    // queued, so that cancel() never claims to have stopped work it cannot stop.
    void setQueued()
    {
        QMutexLocker lock(&m_mutex);
        if (m_delivery == Delivery::Direct)
            m_delivery = Delivery::Queued;
    }
    // False when the request was cancelled while queued: it must not run.
    bool start()
    {
        QMutexLocker lock(&m_mutex);
        if (m_delivery == Delivery::Cancelled)
            return false;
        m_delivery = Delivery::Started;
        return true;
    }
    // Withdraws a request still waiting in its queue and completes the reply
    // with error; false, changing nothing, when it was started, completed or
    // never queued.
    bool cancel(const CMError& error)
    {
        {
            QMutexLocker lock(&m_mutex);
            if (m_delivery != Delivery::Queued || m_finished)
                return false;
            m_delivery = Delivery::Cancelled;
        }
        complete(nullptr, &error);
        return true;
    }
    bool isCancelled() const
    {
        QMutexLocker lock(&m_mutex);
        return m_delivery == Delivery::Cancelled;
    }

    // Calls fn once the reply has completed: on the completing thread, or at
    // once on this thread when it already has.
    void onFinished(std::function<void()> fn)
    {
        {
            QMutexLocker lock(&m_mutex);
            if (!m_finished) {
                m_callbacks.push_back(std::move(fn));
                return;
            }
        }
        fn();
    }

private:
    enum class Delivery { Direct, Queued, Started, Cancelled };

    bool complete(const T* data, const CMError* error)
    {
        std::vector<std::function<void()>> callbacks;
        {
            QMutexLocker lock(&m_mutex);
            if (m_finished)
                return false;
            m_finished = true;
            if (data)
                m_data = *data;
            if (error) {
                m_hasError = true;
                m_error = *error;
            }
            callbacks.swap(m_callbacks);
            m_cond.wakeAll();
        }
        for (const auto& fn : callbacks)
            fn();
        return true;
    }

    mutable QMutex m_mutex;
    QWaitCondition m_cond;
    bool m_finished = false;
    bool m_hasError = false;
    Delivery m_delivery = Delivery::Direct;
    T m_data{};
    CMError m_error;
    std::vector<std::function<void()>> m_callbacks;
};
