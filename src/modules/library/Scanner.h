#pragma once

#include "LibraryStore.h"
#include "ScanProgress.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QTimer>

class Artwork;

// The scan of the music folder into the store. It runs on its owner's thread
// a few files per turn of the event loop, so that requests are answered while
// it reads; each turn is one transaction, so a scan that is killed keeps what
// it wrote and the next one reads only what is left. Only files that are new
// or whose size or modification time changed are read; files that are gone
// are dropped.
class Scanner : public QObject
{
    Q_OBJECT
public:
    // Files read per turn of the event loop.
    static constexpr int FilesPerTurn = 16;
    // The least time between two progress reports while scanning.
    static constexpr int ReportIntervalMs = 250;

    Scanner(LibraryStore* store, Artwork* artwork, QObject* parent = nullptr);

    // Begins a scan of folder (an absolute path); asked while one runs, a
    // second scan follows the first.
    void start(const QString& folder);
    // Reads up to budget files; false once the scan has ended.
    bool step(int budget);
    // Runs a started scan to its end without the event loop.
    void runToEnd();

    bool isScanning() const { return m_progress.scanning; }
    const ScanProgress& progress() const { return m_progress; }
    // The folder of the last scan, as its paths are stored.
    const QString& root() const { return m_root; }
    // Every folder the last scan walked, and when it began to walk them.
    const QSet<QString>& folders() const { return m_folders; }
    const QDateTime& listedAt() const { return m_listedAt; }

signals:
    // The progress changed: a few times a second while scanning, and at the end.
    void progressed();
    void finished();

private slots:
    void on_turnTimer_timeout();

private:
    struct Found
    {
        QString file;
        LibraryStore::Stamp stamp;
    };

    void walk(const QString& dir, QSet<QString>* visited, QList<Found>* found) const;
    void readFile(const Found& found);
    void finish();
    void report(bool force);

    LibraryStore* m_store;
    Artwork* m_artwork;
    ScanProgress m_progress;
    QString m_root;
    QSet<QString> m_folders;
    QDateTime m_listedAt;
    QList<Found> m_todo;
    int m_next = 0;
    QString m_queued;
    QTimer m_turnTimer;
    QElapsedTimer m_sinceReport;
};
