#include "PlayLogicThread.h"

#include "RecordingPlayLogic.h"

#include <CMNodesWorker.h>
#include <CMRootWorker.h>

PlayLogicThread::PlayLogicThread(const QString& prefix)
{
    m_thread.start();
    auto* context = new QObject;
    context->moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        context,
        [this, prefix]() {
            m_worker = new CMNodesWorker({{QStringLiteral("prefix"), prefix}}, prefix);
            m_logic = new RecordingPlayLogic(m_worker->nodes(), CMPath(prefix + QStringLiteral(":/playlogic")));
        },
        Qt::BlockingQueuedConnection);
    context->deleteLater();
    CMRoot()->registerWorker(prefix, m_worker);
}

PlayLogicThread::~PlayLogicThread()
{
    CMRoot()->unregisterWorker(m_worker->prefix());
    // Objects of the thread are deleted there, after what it still had queued.
    auto* context = new QObject;
    context->moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        context,
        [this]() {
            delete m_logic;
            delete m_worker;
        },
        Qt::BlockingQueuedConnection);
    context->deleteLater();
    m_thread.quit();
    m_thread.wait();
}
