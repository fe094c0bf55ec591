#include "AtomicFile.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

bool fail(QString* error, const QString& what)
{
    *error = what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool writeAll(int fd, const QByteArray& content)
{
    const char* data = content.constData();
    qint64 left = content.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, size_t(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data += n;
        left -= n;
    }
    return true;
}

} // namespace

bool AtomicFile::write(const QString& path, const QByteArray& content, QString* error)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray temporary = target + ".tmp";
    const int fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return fail(error, QStringLiteral("open ") + path + QStringLiteral(".tmp"));
    if (!writeAll(fd, content) || ::fsync(fd) != 0) {
        fail(error, QStringLiteral("write ") + path + QStringLiteral(".tmp"));
        ::close(fd);
        ::unlink(temporary.constData());
        return false;
    }
    ::close(fd);
    if (::rename(temporary.constData(), target.constData()) != 0) {
        fail(error, QStringLiteral("rename to ") + path);
        ::unlink(temporary.constData());
        return false;
    }
    const int dir = ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}
