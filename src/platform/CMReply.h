#pragma once

#include "CMReplyData.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <memory>

// What a reply reports when its data is not of the type a success handler
// expects; the report is an ERROR line on logger "CMReply".
VEXA_API QString cmReplyWrongTypeText();
VEXA_API void cmReplyReportWrongType();

// A handle on a reply's shared state. Copies share it: whoever holds a copy
// can complete the reply, wait for it or watch it.
template <typename T>
class CMReply
{
public:
    CMReply() : d(std::make_shared<CMReplyData<T>>()) {}

    bool setData(const T& data) const { return d->setData(data); }
    bool setError(const CMError& error) const { return d->setError(error); }
    bool isFinished() const { return d->isFinished(); }
    bool hasError() const { return d->hasError(); }
    T data() const { return d->data(); }
    CMError error() const { return d->error(); }
    bool waitForFinished(int msecs = -1) const { return d->waitForFinished(msecs); }
    void onFinished(std::function<void()> fn) const { d->onFinished(std::move(fn)); }
    // Withdrawing a queued request: see CMReplyData.
    void setQueued() const { d->setQueued(); }
    bool start() const { return d->start(); }
    bool cancel(const CMError& error) const { return d->cancel(error); }
    bool isCancelled() const { return d->isCancelled(); }

    // The data as a V, for a success handler that expects one; false, with
    // the wrong type reported, when the data is not a V.
    template <typename V>
    bool dataAs(V* out) const
    {
        const QVariant value = QVariant::fromValue(d->data());
        if (value.userType() != qMetaTypeId<V>()) {
            cmReplyReportWrongType();
            return false;
        }
        *out = value.value<V>();
        return true;
    }

    // Calls fn with the data when the reply succeeds, on context's thread
    // (at once when that is the completing thread). Dropped if context is gone.
    void onSuccess(QObject* context, std::function<void(const T&)> fn) const
    {
        watch(context, [fn](const CMReplyData<T>& r) {
            if (!r.hasError())
                fn(r.data());
        });
    }
    // Calls fn with the error when the reply fails, as onSuccess does.
    void onError(QObject* context, std::function<void(const CMError&)> fn) const
    {
        watch(context, [fn](const CMReplyData<T>& r) {
            if (r.hasError())
                fn(r.error());
        });
    }

    bool operator==(const CMReply& other) const { return d == other.d; }

private:
    void watch(QObject* context, std::function<void(const CMReplyData<T>&)> fn) const
    {
        std::shared_ptr<CMReplyData<T>> data = d;
        QPointer<QObject> guard(context);
        d->onFinished([data, guard, fn]() {
            if (guard)
                QMetaObject::invokeMethod(guard.data(), [data, fn]() { fn(*data); }, Qt::AutoConnection);
        });
    }

    std::shared_ptr<CMReplyData<T>> d;
};
