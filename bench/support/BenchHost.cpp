#include "BenchHost.h"

#include <QFile>
#include <QJsonDocument>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace {

const QByteArray kProbeTarget = "/api/v1/data?path=settings%3A%2Flanguage&roles=value";

} // namespace

quint16 benchFreePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    quint16 port = 0;
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

BenchHost::BenchHost(const QStringList& extraArguments) : m_extraArguments(extraArguments)
{
    if (!m_root.isValid() || !m_modules.isValid()
        || !QFile::link(QStringLiteral(VEXA_PLAYLISTS_MODULE), m_modules.filePath(QStringLiteral("libvexa_playlists.so"))))
        std::fprintf(stderr, "bench: cannot prepare temporary folders\n");
}

BenchHost::~BenchHost()
{
    stop();
}

bool BenchHost::start()
{
    m_port = benchFreePort();
    m_process.setProgram(QStringLiteral(VEXA_HOST_BINARY));
    m_process.setArguments(QStringList{QStringLiteral("--root"), m_root.path(), QStringLiteral("--listen"),
                                       QStringLiteral("127.0.0.1:%1").arg(m_port), QStringLiteral("--modules"),
                                       m_modules.path(), QStringLiteral("--log-level"), QStringLiteral("WARN")}
                           + m_extraArguments);
    m_process.setStandardOutputFile(m_root.filePath(QStringLiteral("host.log")), QIODevice::Append);
    m_process.setStandardErrorFile(m_root.filePath(QStringLiteral("host.log")), QIODevice::Append);
    const auto started = std::chrono::steady_clock::now();
    m_process.start();
    for (int i = 0; i < 20000 && m_process.state() != QProcess::NotRunning; ++i) {
        BenchConnection probe(m_port);
        QByteArray answer;
        if (probe.request("GET", kProbeTarget, QByteArray(), &answer) == 200) {
            m_startMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
            return true;
        }
        QThread::usleep(500);
    }
    std::fprintf(stderr, "bench: the host did not start; see %s\n", qPrintable(m_root.filePath(QStringLiteral("host.log"))));
    return false;
}

void BenchHost::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(60000))
        m_process.kill();
    m_process.waitForFinished(5000);
}

long BenchHost::rssKb() const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
    if (m_process.state() == QProcess::NotRunning || !status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return 0;
}

int BenchHost::post(BenchConnection& connection, const QByteArray& path, const QByteArray& valueJson,
                    QByteArray* answer) const
{
    QByteArray ignored;
    const QByteArray body = "{\"path\":\"" + path + "\",\"value\":" + valueJson + '}';
    return connection.request("POST", "/api/v1/data", body, answer ? answer : &ignored);
}

int BenchHost::post(BenchConnection& connection, const QByteArray& path, const QJsonObject& value,
                    QByteArray* answer) const
{
    return post(connection, path, QJsonDocument(value).toJson(QJsonDocument::Compact), answer);
}
