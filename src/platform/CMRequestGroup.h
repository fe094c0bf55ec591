#pragma once

#include "CMPath.h"
#include "CMReply.h"

#include <QObject>
#include <QStringList>
#include <QVariant>

// A set of invocations answered together: the callback runs once, on the
// group's thread, after every invocation has answered (with data or error).
class VEXA_API CMRequestGroup : public QObject
{
    Q_OBJECT
public:
    explicit CMRequestGroup(QObject* parent = nullptr) : QObject(parent) {}

    // Invokes value at path through the root; name identifies the answer.
    void addInvoke(const QString& name, const CMPath& path, const QVariant& value);
    // Connects finished() to receiver's slot (a SLOT() signature).
    void setCallback(QObject* receiver, const char* slot);

    const QStringList& names() const { return m_names; }
    // The replies in the order the invocations were added.
    const QList<CMReply<QVariant>>& replies() const { return m_replies; }

signals:
    void finished();

private:
    void on_reply_finished();

    QStringList m_names;
    QList<CMReply<QVariant>> m_replies;
    int m_pending = 0;
    bool m_callbackSet = false;
    bool m_finished = false;
};
