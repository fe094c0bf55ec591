#pragma once

#include "ChildProcess.h"
#include "HttpClient.h"

#include <QStringList>
#include <QTemporaryDir>

// The real vexa-host as a child process for a test: a temporary root, a
// modules folder holding links to the modules the test asks for, a free
// loopback port. The host is stopped with SIGTERM when the object goes.
class HostProcess
{
public:
    // modules: file names in the test modules folder, such as "libvexa_testmod.so",
    // or absolute paths, such as playlistsModule().
    explicit HostProcess(const QStringList& modules = {QStringLiteral("libvexa_testmod.so")},
                         const QStringList& extraArguments = {});
    ~HostProcess();

    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    // Starts the host and waits until it answers; false with *error set when it does not.
    bool start(QString* error = nullptr);
    // Starts the host without waiting for it.
    bool launch(QString* error = nullptr);
    // SIGTERM, then waits for the exit; true when the host exited by itself with status 0,
    // also when it had already done so.
    bool stop();
    // SIGKILL, as a power cut would end it: nothing is closed or flushed.
    void kill();
    // Stops and starts again on the same root and port.
    bool restart(QString* error = nullptr);
    bool isRunning() const;
    qint64 processId() const { return isRunning() ? m_child.pid() : 0; }

    quint16 port() const { return m_port; }
    QString root() const { return m_root.path(); }
    HttpClient client() const { return HttpClient(m_port); }
    // What the host wrote to its standard error so far.
    QByteArray log() const;

    // The playlists module as the build made it.
    static QString playlistsModule() { return QStringLiteral(VEXA_PLAYLISTS_MODULE); }
    static QString libraryModule() { return QStringLiteral(VEXA_LIBRARY_MODULE); }

    // A request target with a small answer that every host has: its language.
    static constexpr const char* SmallAnswerTarget = "/api/v1/data?path=settings%3A%2Flanguage&roles=value";

    // A loopback port nothing listens on at the moment.
    static quint16 freePort();

private:
    QTemporaryDir m_root;
    QTemporaryDir m_modules;
    QStringList m_extraArguments;
    quint16 m_port = 0;
    ChildProcess m_child;
};
