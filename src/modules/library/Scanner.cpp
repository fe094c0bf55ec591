#include "Scanner.h"

#include "Artwork.h"
#include "LibraryLog.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace {

// Files that sit beside music and are not music: not read, not counted.
bool isCompanion(const QFileInfo& info)
{
    static const QSet<QString> suffixes = {"jpg", "jpeg", "png", "gif", "bmp", "webp", "txt", "nfo", "cue", "log",
                                           "m3u", "m3u8", "pls", "db", "ini", "sqlite", "sqlite-wal", "sqlite-shm"};
    return info.fileName().startsWith(QLatin1Char('.')) || suffixes.contains(info.suffix().toLower());
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
    // Symbolic links are followed, each real folder once: a loop ends where it began.
    const QString real = QFileInfo(dir).canonicalFilePath();
    if (real.isEmpty() || visited->contains(real))
        return;
    visited->insert(real);
    const QFileInfoList entries =
        QDir(dir).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (entry.isDir())
            walk(entry.filePath(), visited, found);
        else if (entry.isFile() && !isCompanion(entry))
            found->append({entry.filePath(), {entry.size(), entry.lastModified().toMSecsSinceEpoch()}});
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
        if (!QFileInfo::exists(found.file)) {
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
    if (!step(FilesPerTurn))
        m_turnTimer.stop();
}

void Scanner::finish()
{
    m_turnTimer.stop();
    m_store->prune();
    m_artwork->forgetFolders();
    m_todo.clear();
    m_progress.scanning = false;
    LOG4CPLUS_INFO(libraryLogger(), "Scan of " << m_root << " done: " << m_progress.tracks << " tracks, "
                                               << m_progress.skipped << " skipped");
    report(true);
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
