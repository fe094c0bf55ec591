#include "CMRequestGroup.h"

#include "CMRootWorker.h"
#include "VexaConnect.h"

#include <QPointer>

void CMRequestGroup::addInvoke(const QString& name, const CMPath& path, const QVariant& value)
{
    CMReply<QVariant> reply;
    m_names.append(name);
    m_replies.append(reply);
    ++m_pending;
    QPointer<CMRequestGroup> self(this);
    // Counted on the group's thread, whatever thread answers.
    reply.onFinished([self]() {
        if (self)
            QMetaObject::invokeMethod(self.data(), [self]() { self->on_reply_finished(); }, Qt::QueuedConnection);
    });
    CMRoot()->invoke(path, value, reply);
}

void CMRequestGroup::setCallback(QObject* receiver, const char* slot)
{
    vexaConnect(this, SIGNAL(finished()), receiver, slot, Qt::AutoConnection);
    m_callbackSet = true;
    // A group whose answers all came before its callback was set still calls
    // back: this extra count is released through the event loop.
    ++m_pending;
    QMetaObject::invokeMethod(this, [this]() { on_reply_finished(); }, Qt::QueuedConnection);
}

void CMRequestGroup::on_reply_finished()
{
    --m_pending;
    if (m_pending == 0 && m_callbackSet && !m_finished) {
        m_finished = true;
        emit finished();
    }
}
