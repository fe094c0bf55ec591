#include "Scanner.h"

#include "Artwork.h"
#include "FileNames.h"
#include "LibraryLog.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace {

// Files that sit beside music and are not music: not read, not counted.
bool isCompanion(const QByteArray& name)
{
    static const QSet<QByteArray> suffixes = {"jpg", "jpeg", "png", "gif", "bmp", "webp", "txt", "nfo", "cue", "log",
                                              "m3u", "m3u8", "pls", "db", "ini", "sqlite", "sqlite-wal", "sqlite-shm"};
    const int dot = name.lastIndexOf('.');
    return dot >= 0 && suffixes.contains(name.mid(dot + 1).toLower());
}

// The names in dir, hidden ones left out; empty when it cannot be read.
QList<QByteArray> namesIn(const QByteArray& dir)
{
    QList<QByteArray> names;
    DIR* stream = ::opendir(dir.constData());
    if (!stream)
        return names;
    while (const dirent* entry = ::readdir(stream)) {
        if (entry->d_name[0] != '.')
            names.append(QByteArray(entry->d_name));
    }
    ::closedir(stream);
    std::sort(names.begin(), names.end());
    return names;
}

QString realPathOf(const QByteArray& path)
{
    char* real = ::realpath(path.constData(), nullptr);
    const QString result = real ? FileNames::decode(real) : QString();
    std::free(real);
    return result;
}

} // namespace

Scanner::Scanner(LibraryStore* store, Artwork* artwork, QObject* parent)
    : QObject(parent), m_store(store), m_artwork(artwork)
{
    m_turnTimer.setInterval(0);
    connect(&m_turnTimer, &QTimer::timeout, this, &Scanner::on_turnTimer_timeout);
}

void Scanner::start(const QString& folder)
{
    if (m_progress.scanning) {
        m_queued = folder;
        return;
    }
    m_progress = ScanProgress();
    const QFileInfo info(folder);
    m_root = info.canonicalFilePath();
    if (m_root.isEmpty() || !info.isDir() || !info.isReadable() || !info.isExecutable()) {
        m_root = QDir::cleanPath(info.absoluteFilePath());
        m_progress.error = QStringLiteral("The folder %1 does not exist or cannot be read").arg(m_root);
        LOG4CPLUS_WARN(libraryLogger(), m_progress.error);
        report(true);
        emit finished();
        return;
    }
    LOG4CPLUS_INFO(libraryLogger(), "Scanning " << m_root);

    QList<Found> found;
    m_folders.clear();
    m_listedAt = QDateTime::currentDateTime();
    walk(m_root, &m_folders, &found);
    QHash<QString, LibraryStore::Stamp> known = m_store->stamps();
    m_todo.clear();
    m_next = 0;
    for (const Found& file : qAsConst(found)) {
        const auto stored = known.constFind(file.file);
        if (stored == known.constEnd() || !(stored.value() == file.stamp))
            m_todo.append(file);
        known.remove(file.file);
    }
    m_store->begin();
    for (auto it = known.constBegin(); it != known.constEnd(); ++it)
        m_store->removeFile(it.key());
    m_store->commit();

    m_progress.scanning = true;
    m_progress.total = found.size();
    m_progress.done = found.size() - m_todo.size();
    report(true);
    m_turnTimer.start();
}

void Scanner::walk(const QString& dir, QSet<QString>* visited, QList<Found>* found) const
{
    // The folder is listed with the system's own calls: QDir leaves out
    // names that are not UTF-8, and their music would be lost.
    const QByteArray native = FileNames::encode(dir);
    // Symbolic links are followed, each real folder once: a loop ends where it began.
    const QString real = realPathOf(native);
    if (real.isEmpty() || visited->contains(real))
        return;
    visited->insert(real);
    for (const QByteArray& name : namesIn(native)) {
        const QByteArray path = native + '/' + name;
        struct stat info;
        if (::stat(path.constData(), &info) != 0)
            continue;
        if (S_ISDIR(info.st_mode)) {
            walk(FileNames::decode(path), visited, found);
        } else if (S_ISREG(info.st_mode) && !isCompanion(name)) {
            const qint64 mtime = qint64(info.st_mtim.tv_sec) * 1000 + info.st_mtim.tv_nsec / 1000000;
            found->append({FileNames::decode(path), {qint64(info.st_size), mtime}});
        }
    }
}

bool Scanner::step(int budget)
{
    if (!m_progress.scanning)
        return false;
    m_store->begin();
    for (; budget > 0 && m_next < m_todo.size(); --budget)
        readFile(m_todo.at(m_next++));
    m_store->commit();
    if (m_next >= m_todo.size()) {
        finish();
        return false;
    }
    report(false);
    return true;
}

void Scanner::readFile(const Found& found)
{
    ++m_progress.done;
    const std::optional<TrackTags> tags = TrackTags::read(found.file);
    if (!tags) {
        // Removed while the scan ran: it is gone, not broken.
        if (::access(FileNames::encode(found.file).constData(), F_OK) != 0) {
            m_store->removeFile(found.file);
            return;
        }
        LOG4CPLUS_WARN(libraryLogger(), "Skipping " << found.file << ": not an audio file TagLib reads");
        m_store->putUnreadable(found.file, found.stamp);
        return;
    }
    QString artwork = m_artwork->thumbnailOf(tags->picture);
    if (artwork.isEmpty())
        artwork = m_artwork->folderThumbnail(QFileInfo(found.file).path());
    m_store->putTrack(found.file, m_root, found.stamp, *tags, artwork);
}

void Scanner::runToEnd()
{
    m_turnTimer.stop();
    while (step(256)) {
    }
}

void Scanner::on_turnTimer_timeout()
{
    // A scan that ends stops the timer itself; the scan queued behind it has
    // started it again by then, and it must keep running.
    step(FilesPerTurn);
}

void Scanner::finish()
{
    m_turnTimer.stop();
    m_store->prune();
    m_artwork->forgetFolders();
    m_todo.clear();
    m_progress.scanning = false;
    report(true);
    LOG4CPLUS_INFO(libraryLogger(), "Scan of " << m_root << " done: " << m_progress.tracks << " tracks, "
                                               << m_progress.skipped << " skipped");
    emit finished();
    if (!m_queued.isEmpty()) {
        const QString next = m_queued;
        m_queued.clear();
        start(next);
    }
}

void Scanner::report(bool force)
{
    if (!force && m_sinceReport.isValid() && m_sinceReport.elapsed() < ReportIntervalMs)
        return;
    m_sinceReport.start();
    m_progress.tracks = m_store->trackCount();
    m_progress.skipped = m_store->unreadableCount();
    emit progressed();
}
