#include "BenchHost.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <cstdio>

bool BenchHost::start()
{
    QString error;
    const auto started = std::chrono::steady_clock::now();
    if (!m_process.start(&error)) {
        std::fprintf(stderr, "bench: %s\n", qPrintable(error));
        return false;
    }
    m_startMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
    return true;
}

long BenchHost::rssKb() const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
    if (!m_process.isRunning() || !status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return 0;
}

int BenchHost::openFds() const
{
    return int(QDir(QStringLiteral("/proc/%1/fd").arg(m_process.processId())).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

int BenchHost::post(BenchConnection& connection, const QByteArray& path, const QByteArray& valueJson,
                    QByteArray* answer) const
{
    QByteArray ignored;
    return connection.send(postMessage(path, valueJson), answer ? answer : &ignored);
}

QByteArray BenchHost::postMessage(const QByteArray& path, const QByteArray& valueJson)
{
    return BenchConnection::message("POST", "/api/v1/data", "{\"path\":\"" + path + "\",\"value\":" + valueJson + '}');
}
