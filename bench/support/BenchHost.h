#pragma once

#include "BenchConnection.h"

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// The real vexa-host with the playlists module alone, on a temporary root
// and a free loopback port, as the HTTP benchmarks drive it.
class BenchHost
{
public:
    explicit BenchHost(const QStringList& extraArguments = QStringList());
    ~BenchHost();

    BenchHost(const BenchHost&) = delete;
    BenchHost& operator=(const BenchHost&) = delete;

    // Starts the host and waits until it answers; false when it did not.
    bool start();
    void stop();
    // Real time from starting the process to its first answer.
    double startMs() const { return m_startMs; }
    // The host's resident memory now, in kB (0 when it is not running).
    long rssKb() const;

    quint16 port() const { return m_port; }
    QString rootPath() const { return m_root.path(); }

    // POST /api/v1/data {"path": path, "value": value}; the HTTP status.
    int post(BenchConnection& connection, const QByteArray& path, const QByteArray& valueJson,
             QByteArray* answer = nullptr) const;
    int post(BenchConnection& connection, const QByteArray& path, const QJsonObject& value,
             QByteArray* answer = nullptr) const;

private:
    QTemporaryDir m_root;
    QTemporaryDir m_modules;
    QStringList m_extraArguments;
    quint16 m_port = 0;
    QProcess m_process;
    double m_startMs = 0;
};

// A free TCP port on the loopback.
quint16 benchFreePort();
