#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into a Qt signal on the main thread: the handler
// only notes the signal and writes to a pipe, everything else happens in the
// event loop. Made first thing at start, so that no stop finds the default
// action (death) in place.
class SignalWatcher : public QObject
{
    Q_OBJECT
public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

    // Whether SIGINT or SIGTERM came, also before the event loop runs.
    bool stopPending() const;

signals:
    void stopRequested(int signalNumber);

private:
    void on_notifier_activated();

    QSocketNotifier* m_notifier = nullptr;
};
