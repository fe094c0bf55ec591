#include "TestModuleWorker.h"

#include "TestItemsNode.h"
#include "TestPlayLogic.h"

#include <CMSubscribe.h>
#include <VexaJson.h>
#include <VexaPlayListItem.h>
#include <VexaRoles.h>

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QTimer>

TestModuleWorker::TestModuleWorker(const QHash<QString, QVariant>& parameters)
    : CMNodesWorker(parameters, QStringLiteral("TestModule"))
{
    holdStartWhileAsked();
    m_items = new TestItemsNode(CMPath(prefix() + QStringLiteral(":/items")));
    m_items->setNodes(nodes());
    m_playLogic = new TestPlayLogic(nodes(), CMPath(prefix() + QStringLiteral(":/playlogic")));
}

void TestModuleWorker::holdStartWhileAsked()
{
    // The host is started in its root: a test that made the first file there
    // holds the host's start-up in this module until it removes that file,
    // and learns from the second that the hold began.
    const QString hold = QStringLiteral("testmod-hold-start");
    if (!QFile::exists(hold))
        return;
    QFile(QStringLiteral("testmod-holding")).open(QIODevice::WriteOnly);
    QElapsedTimer elapsed;
    elapsed.start();
    while (QFile::exists(hold) && elapsed.elapsed() < 30000)
        QThread::msleep(5);
}

void TestModuleWorker::setDataRequest(const CMSetDataRequest& request)
{
    // Remember whether the platform delivered the request on this worker's thread.
    const bool onWorkerThread = QThread::currentThread() == thread();
    runOnThread([this, request, onWorkerThread]() {
        if (request.path().path() == QLatin1String("/command")) {
            request.reply().setData(QVariantHash{{QStringLiteral("onWorkerThread"), onWorkerThread},
                                                 {QStringLiteral("value"), request.value()}});
            return;
        }
        handle(request);
    });
}

void TestModuleWorker::handle(const CMSetDataRequest& request)
{
    const QString command = request.path().path();
    const QVariantHash value = request.value().toHash();
    if (command == QLatin1String("/refuse")) {
        request.reply().setError(CMError(CMError::DefaultName(), CMError::DefaultTitle(),
                                         TrString(QStringLiteral("Refused: ") + value.value(QStringLiteral("reason")).toString())));
    } else if (command == QLatin1String("/notify")) {
        const CMPath path(value.value(QStringLiteral("path")).toString());
        if (value.value(QStringLiteral("kind")).toString() == QLatin1String("reset")) {
            subscribe()->changedStartingWith(path, CMSubscribe::RowsChangeReset(), -1, -1);
        } else {
            QStringList changes;
            for (const QVariant& row : value.value(QStringLiteral("rows")).toList())
                changes.append(QStringLiteral("+%1").arg(row.toInt()));
            subscribe()->rowsChanged(path, changes, 0, -1);
        }
        request.reply().setData(true);
    } else if (command == QLatin1String("/slow")) {
        const CMVoidReply reply = request.reply();
        QTimer::singleShot(value.value(QStringLiteral("ms")).toInt(), this, [reply]() { reply.setData(true); });
    } else if (command == QLatin1String("/count")) {
        // Holds the worker's thread for a while, as a long command does, and
        // answers how many times it was carried out.
        QThread::msleep(static_cast<unsigned long>(value.value(QStringLiteral("ms")).toInt()));
        request.reply().setData(++m_counted);
    } else if (command == QLatin1String("/prepare-items")) {
        // Each content path becomes one track whose title names the path.
        QVariantList items;
        for (const QVariant& path : request.value().toList()) {
            VexaRoles roles;
            roles.setTitle(QStringLiteral("Track ") + path.toString());
            roles.setType(VexaRolesType::Audio);
            VexaMediaResource resource;
            resource.setUri(QStringLiteral("test://") + path.toString());
            resource.setDuration(30);
            VexaMediaData media;
            media.setResources({resource});
            roles.setMediaData(media);
            VexaPlayListItem item;
            item.setVexaRoles(QString::fromUtf8(VexaJson::toJson(roles.toVariant())));
            item.fillFromRoles();
            items.append(item.toHash());
        }
        request.reply().setData(items);
    } else {
        CMNodesWorker::setDataRequest(request);
    }
}
