#include <CMListRowsNode.h>
#include <CMNodes.h>
#include <CMNodesWorker.h>
#include <CMRequestGroup.h>
#include <CMRootWorker.h>
#include <CMSubscribe.h>
#include <CMValueItem.h>
#include <CMVoidReply.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

// Runs the event loop until done() or two seconds passed.
template <typename F>
bool processUntil(F done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return done();
}

// A node that answers set-data on the worker's thread with the value it got.
class EchoNode : public CMListRowsNode
{
public:
    using CMListRowsNode::CMListRowsNode;
    bool setDataRequest(const CMSetDataRequest& request) override
    {
        request.reply().setData(request.value());
        return true;
    }
};

class WorkerThread
{
public:
    explicit WorkerThread(const QString& prefix)
    {
        m_thread.start();
        auto* context = new QObject;
        context->moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            context,
            [this, prefix]() {
                worker = new CMNodesWorker({{QStringLiteral("prefix"), prefix}}, QStringLiteral("Test"));
                (new EchoNode(CMPath(prefix + QStringLiteral(":/echo"))))->setNodes(worker->nodes());
            },
            Qt::BlockingQueuedConnection);
        context->deleteLater();
        CMRoot()->registerWorker(prefix, worker);
    }
    ~WorkerThread()
    {
        CMRoot()->unregisterWorker(worker->prefix());
        m_thread.quit();
        m_thread.wait();
    }
    CMNodesWorker* worker = nullptr;

private:
    QThread m_thread;
};

} // namespace

TEST(CMReply, CompletesOnceWhateverThreadsRace)
{
    for (int round = 0; round < 50; ++round) {
        CMReply<QVariant> reply;
        std::atomic<int> callbacks{0};
        std::atomic<int> winners{0};
        reply.onFinished([&]() { ++callbacks; });
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&, t]() {
                const bool won = t % 2 ? reply.setData(t) : reply.setError(CMError("e", "E", TrString("x")));
                if (won)
                    ++winners;
            });
        }
        for (auto& th : threads)
            th.join();
        EXPECT_EQ(winners.load(), 1);
        EXPECT_EQ(callbacks.load(), 1);
        EXPECT_TRUE(reply.waitForFinished(0));
        // A watcher added after completion is called at once.
        bool late = false;
        reply.onFinished([&]() { late = true; });
        EXPECT_TRUE(late);
    }
}

TEST(CMReply, WaitTimesOutWhileOpenAndCopiesShareState)
{
    CMVoidReply reply;
    EXPECT_FALSE(reply.waitForFinished(20));
    const CMVoidReply copy = reply;
    std::thread completer([copy]() { copy.setFinished(); });
    EXPECT_TRUE(reply.waitForFinished(2000));
    completer.join();
    EXPECT_FALSE(reply.hasError());
    EXPECT_FALSE(reply.data().isValid());
    EXPECT_FALSE(copy.setData(1));
}

TEST(CMReply, SuccessAndErrorHandlersRunOnTheirContextsThread)
{
    QObject context;
    CMReply<QVariant> ok;
    CMReply<QVariant> failed;
    std::atomic<bool> successOnMain{false};
    std::atomic<bool> errorCalled{false};
    std::atomic<bool> wrongHandler{false};
    ok.onSuccess(&context, [&](const QVariant& v) { successOnMain = v.toInt() == 3 && QThread::currentThread() == qApp->thread(); });
    ok.onError(&context, [&](const CMError&) { wrongHandler = true; });
    failed.onError(&context, [&](const CMError& e) { errorCalled = e.message() == "no"; });
    failed.onSuccess(&context, [&](const QVariant&) { wrongHandler = true; });
    std::thread completer([&]() {
        ok.setData(3);
        failed.setError(CMError("e", "E", TrString("no")));
    });
    completer.join();
    EXPECT_TRUE(processUntil([&]() { return successOnMain && errorCalled; }));
    EXPECT_FALSE(wrongHandler);
}

TEST(CMRequestGroup, CallsBackOnceAfterEveryInvocationAnswered)
{
    WorkerThread a(QStringLiteral("groupa"));
    WorkerThread b(QStringLiteral("groupb"));
    CMRequestGroup group;
    group.addInvoke("a", CMPath("groupa:/echo"), 1);
    group.addInvoke("missing", CMPath("nobody:/echo"), 2);
    group.addInvoke("b", CMPath("groupb:/echo"), 3);
    int calls = 0;
    QObject::connect(&group, &CMRequestGroup::finished, &group, [&]() {
        ++calls;
        for (const CMReply<QVariant>& r : group.replies())
            EXPECT_TRUE(r.isFinished());
    });
    // The callback is a slot by signature; deleteLater of a throw-away object serves.
    group.setCallback(new QObject, SLOT(deleteLater()));
    EXPECT_TRUE(processUntil([&]() { return calls > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(group.names(), QStringList({"a", "missing", "b"}));
    EXPECT_EQ(group.replies().at(2).data().toInt(), 3);
    EXPECT_TRUE(group.replies().at(1).hasError());
}

TEST(CMValueItem, CallsTheSlotWithNewAndOldValueForItsPathOnly)
{
    QObject parent;
    QSignalSpy spy(new CMValueItem(&parent, CMPath("power:/target"), new QObject(&parent), SLOT(deleteLater())),
                   SIGNAL(changed(VexaValue, VexaValue)));
    VexaValue one, two;
    one.setI32(1);
    two.setI32(2);
    CMSubscribe subscribe;
    subscribe.valueChanged(CMPath("power:/other"), two, one);
    subscribe.valueChanged(CMPath("power:/target"), two, one);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<VexaValue>().i32(), 2);
    EXPECT_EQ(spy.at(0).at(1).value<VexaValue>().i32(), 1);
}

TEST(CMNodes, FindsByBasePathAndForgetsReleasedNodes)
{
    CMNodes nodes;
    auto* node = new CMListRowsNode(CMPath("p:/menu"));
    node->setNodes(&nodes);
    EXPECT_EQ(nodes.find(CMPath("p:/menu?plid=3&action=x")), node);
    EXPECT_EQ(nodes.find(CMPath("p:/menu/sub")), nullptr);
    auto* replacement = new CMListRowsNode(CMPath("p:/menu"));
    replacement->setNodes(&nodes);
    node->release();
    // Releasing the replaced node must not take its successor out.
    EXPECT_EQ(nodes.find(CMPath("p:/menu")), replacement);
    replacement->release();
    EXPECT_EQ(nodes.find(CMPath("p:/menu")), nullptr);
}

TEST(CMReply, DataOfAnotherTypeThanExpectedIsRefused)
{
    CMReply<QVariant> reply;
    reply.setData(QVariantHash{{QStringLiteral("xclass"), QStringLiteral("VexaActionReply")}});
    QVariantHash hash;
    ASSERT_TRUE(reply.dataAs(&hash));
    EXPECT_EQ(hash.value(QStringLiteral("xclass")).toString(), "VexaActionReply");

    CMReply<QVariant> text;
    text.setData(QStringLiteral("not a hash"));
    EXPECT_FALSE(text.dataAs(&hash));
    EXPECT_EQ(hash.value(QStringLiteral("xclass")).toString(), "VexaActionReply");
    EXPECT_FALSE(CMReply<QVariant>().dataAs(&hash));
}
