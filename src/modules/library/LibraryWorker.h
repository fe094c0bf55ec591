#pragma once

#include "CMNodesWorker.h"
#include "ScanProgress.h"

#include <QFileSystemWatcher>
#include <QMutex>
#include <QTimer>

#include <memory>

class Artwork;
class Browser;
class LibraryStore;
class Scanner;

// The library module's worker: it owns the store, the scan and the browse
// tree, scans the folder of settings:/library/folder at start, on
// library:/rescan and when the folder changes, shows the scan's progress at
// library:/scan and answers prepare-items for the Playlists module.
class LibraryWorker : public CMNodesWorker
{
    Q_OBJECT
public:
    // Changes under the folder are gathered this long before a scan starts.
    static constexpr int WatchDebounceMs = 500;

    explicit LibraryWorker(const QHash<QString, QVariant>& parameters);
    ~LibraryWorker() override;

    // False when the store could not be opened: the module cannot start.
    bool isReady() const { return m_ready; }

    QVariant getValue(const CMPath& path) override;
    void setDataRequest(const CMSetDataRequest& request) override;
    void getRows(const CMGetRowsRequest& request) override;
    void getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply) override;

    // The music folder the setting names, as an absolute path.
    static QString musicFolder();

private slots:
    void on_scanner_progressed();
    void on_scanner_finished();
    void on_watcher_directoryChanged();

private:
    // The node for a path: registered at it, or for "<kind>/<id>" at "<kind>".
    CMNode* nodeFor(const CMPath& path);
    void startScan();
    // Brings the watch to the folders the last scan walked.
    void watchFolders();
    void answerPrepareItems(const CMSetDataRequest& request);

    bool m_ready = false;
    std::unique_ptr<LibraryStore> m_store;
    std::unique_ptr<Artwork> m_artwork;
    std::unique_ptr<Browser> m_browser;
    Scanner* m_scanner = nullptr;
    QFileSystemWatcher m_watcher;
    QTimer m_watchDebounce;

    // Read by HTTP threads through getValue.
    mutable QMutex m_progressMutex;
    ScanProgress m_progress;
};
