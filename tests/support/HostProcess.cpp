#include "HostProcess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <arpa/inet.h>
#include <csignal>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

HostProcess::HostProcess(const QStringList& modules, const QStringList& extraArguments)
    : m_extraArguments(extraArguments)
{
    for (const QString& module : modules) {
        const QString source =
            QDir::isAbsolutePath(module) ? module : QStringLiteral(VEXA_TEST_MODULES_DIR) + QLatin1Char('/') + module;
        QFile::link(source, m_modules.path() + QLatin1Char('/') + QFileInfo(module).fileName());
    }
}

HostProcess::~HostProcess()
{
    stop();
}

bool HostProcess::launch(QString* error)
{
    if (!m_port)
        m_port = freePort();
    // In a cross build, the emulator runs the host.
    const QStringList command = QStringLiteral(VEXA_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                              + QStringList{QStringLiteral(VEXA_HOST_BINARY), QStringLiteral("--root"), m_root.path(),
                                            QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(m_port),
                                            QStringLiteral("--modules"), m_modules.path(), QStringLiteral("--log-level"),
                                            QStringLiteral("WARN")}
                              + m_extraArguments;
    // A file, not a pipe: a chatty host must never block on a full pipe.
    QString ignored;
    return m_child.start(command, m_root.path() + QStringLiteral("/host.log"), error ? error : &ignored);
}

bool HostProcess::start(QString* error)
{
    QString ignored;
    QString& why = error ? *error : ignored;
    if (!launch(error))
        return false;
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_child.isRunning() && elapsed.elapsed() < 15000) {
        // A small answer, asked for often: starts are timed by this wait.
        if (client().get(QString::fromLatin1(SmallAnswerTarget), 2000).status == 200)
            return true;
        QThread::msleep(2);
    }
    why = QStringLiteral("the host did not come up: ") + QString::fromLocal8Bit(log());
    return false;
}

bool HostProcess::stop()
{
    if (!m_child.isRunning())
        return m_child.exitedCleanly();
    m_child.signal(SIGTERM);
    if (m_child.waitForFinished(30000))
        return m_child.exitedCleanly();
    m_child.signal(SIGKILL);
    m_child.waitForFinished(5000);
    return false;
}

void HostProcess::kill()
{
    m_child.signal(SIGKILL);
    m_child.waitForFinished(5000);
}

bool HostProcess::restart(QString* error)
{
    stop();
    return start(error);
}

bool HostProcess::isRunning() const
{
    return m_child.isRunning();
}

QByteArray HostProcess::log() const
{
    QFile file(m_root.path() + QStringLiteral("/host.log"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

quint16 HostProcess::freePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = 0;
    socklen_t length = sizeof(addr);
    quint16 port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &length) == 0)
        port = ntohs(addr.sin_port);
    ::close(fd);
    return port;
}
