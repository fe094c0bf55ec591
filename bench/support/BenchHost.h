#pragma once

#include "BenchConnection.h"
#include "HostProcess.h"

#include <QStringList>

// The real vexa-host with the playlists module alone, on a temporary root
// and a free loopback port, as the HTTP benchmarks drive it.
class BenchHost
{
public:
    explicit BenchHost(const QStringList& extraArguments = QStringList())
        : m_process({HostProcess::playlistsModule()}, extraArguments)
    {
    }

    // Starts the host and waits until it answers; false when it did not.
    bool start();
    void stop() { m_process.stop(); }
    // Real time from starting the process to its first answer.
    double startMs() const { return m_startMs; }
    // The host's resident memory now, in kB (0 when it is not running).
    long rssKb() const;
    // The host's open file descriptors now (0 when it is not running).
    int openFds() const;

    quint16 port() const { return m_process.port(); }
    QString rootPath() const { return m_process.root(); }

    // POST /api/v1/data {"path": path, "value": value}; the HTTP status.
    int post(BenchConnection& connection, const QByteArray& path, const QByteArray& valueJson,
             QByteArray* answer = nullptr) const;
    // That request whole, for BenchConnection::send.
    static QByteArray postMessage(const QByteArray& path, const QByteArray& valueJson);

private:
    HostProcess m_process;
    double m_startMs = 0;
};
