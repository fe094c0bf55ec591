#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into a Qt signal on the main thread: the handler
// only writes to a pipe, everything else happens in the event loop.
class SignalWatcher : public QObject
{
    Q_OBJECT
public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

signals:
    void stopRequested(int signalNumber);

private:
    void on_notifier_activated();

    QSocketNotifier* m_notifier = nullptr;
};
