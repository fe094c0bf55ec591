#include "LibraryWorker.h"

#include "Artwork.h"
#include "Browser.h"
#include "FileNames.h"
#include "LibraryLog.h"
#include "LibraryPaths.h"
#include "LibraryRoles.h"
#include "LibraryStore.h"
#include "Scanner.h"
#include "ui/ListNode.h"
#include "ui/MenuNode.h"
#include "ui/RootNode.h"
#include "ui/SearchNode.h"

#include "CMRootWorker.h"
#include "Language.h"
#include "VexaActionReply.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString kDataDir = QStringLiteral("data-rw/library");

// Installs the catalogues built into the module: ":/library/i18n/library_<language>.qm".
void installCatalogues()
{
    const QDir dir(QStringLiteral(":/library/i18n"));
    for (const QString& file : dir.entryList({QStringLiteral("library_*.qm")}, QDir::Files))
        Language::installCatalogue(file.mid(8, file.size() - 11), dir.filePath(file));
}

// The lists whose rows a scan may change; a reset reaches every path below them.
const char* const kLists[] = {"/artists", "/albums", "/genres", "/folders", "/tracks", "/search",
                              "/artist",  "/album",  "/genre",  "/folder"};

} // namespace

LibraryWorker::LibraryWorker(const QHash<QString, QVariant>& parameters)
    : CMNodesWorker(parameters, QStringLiteral("Library"))
{
    Q_INIT_RESOURCE(library_translations);
    installCatalogues();
    QDir().mkpath(kDataDir);
    m_store = std::make_unique<LibraryStore>();
    if (!m_store->open(kDataDir + QStringLiteral("/library.sqlite")))
        return;
    m_artwork = std::make_unique<Artwork>(kDataDir + QStringLiteral("/public"));
    m_browser = std::make_unique<Browser>(m_store.get(), QFileInfo(musicFolder()).canonicalFilePath());
    m_scanner = new Scanner(m_store.get(), m_artwork.get(), this);
    connect(m_scanner, &Scanner::progressed, this, &LibraryWorker::on_scanner_progressed);
    connect(m_scanner, &Scanner::finished, this, &LibraryWorker::on_scanner_finished);

    LibraryNode::create<RootNode>(nodes(), LibraryPaths::root(), m_browser.get());
    LibraryNode::create<SearchNode>(nodes(), LibraryPaths::search(), m_browser.get());
    LibraryNode::create<MenuNode>(nodes(), LibraryPaths::menu(), m_browser.get());
    for (const char* list : kLists) {
        if (LibraryPaths::at(QString::fromLatin1(list)) != LibraryPaths::search())
            LibraryNode::create<ListNode>(nodes(), LibraryPaths::at(QString::fromLatin1(list)), m_browser.get());
    }

    m_watchDebounce.setSingleShot(true);
    m_watchDebounce.setInterval(WatchDebounceMs);
    connect(&m_watchDebounce, &QTimer::timeout, this, &LibraryWorker::startScan);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &LibraryWorker::on_watcher_directoryChanged);
    m_ready = true;
    // The first scan starts once the worker runs its own loop.
    QTimer::singleShot(0, this, &LibraryWorker::startScan);
}

LibraryWorker::~LibraryWorker() = default;

QString LibraryWorker::musicFolder()
{
    CMPath setting = CMPath::fromPrefix(QStringLiteral("settings"));
    setting.setPath(QStringLiteral("/library/folder"));
    QString folder = VexaValue(CMRoot()->getValue(setting).toHash()).string_().trimmed();
    if (folder.isEmpty())
        folder = QStringLiteral("music");
    return QDir::cleanPath(QDir::current().absoluteFilePath(folder));
}

void LibraryWorker::startScan()
{
    m_scanner->start(musicFolder());
}

QVariant LibraryWorker::getValue(const CMPath& path)
{
    if (path != LibraryPaths::scan())
        return QVariant();
    QMutexLocker lock(&m_progressMutex);
    return m_progress.toValue();
}

void LibraryWorker::on_scanner_progressed()
{
    VexaValue oldValue;
    VexaValue newValue(m_scanner->progress().toValue());
    {
        QMutexLocker lock(&m_progressMutex);
        oldValue = VexaValue(m_progress.toValue());
        m_progress = m_scanner->progress();
    }
    subscribe()->valueChanged(LibraryPaths::scan(), newValue, oldValue);
}

void LibraryWorker::on_scanner_finished()
{
    m_browser->setRoot(m_scanner->root());
    for (const char* list : kLists)
        subscribe()->changedStartingWith(LibraryPaths::at(QString::fromLatin1(list)), CMSubscribe::RowsChangeReset());
    watchFolders();
}

void LibraryWorker::watchFolders()
{
    // Every folder of the music is watched: a file added, removed or renamed
    // anywhere starts a scan. Folders watched before stay watched, so that
    // no change slips through while the watch is brought up to date.
    const QSet<QString>& wanted = m_scanner->folders();
    QStringList gone;
    for (const QString& folder : m_watcher.directories()) {
        if (!wanted.contains(folder))
            gone.append(folder);
    }
    if (!gone.isEmpty())
        m_watcher.removePaths(gone);
    const QStringList watchedList = m_watcher.directories();
    const QSet<QString> watched(watchedList.cbegin(), watchedList.cend());
    QStringList added;
    for (const QString& folder : wanted) {
        // Qt's watcher cannot name a folder whose name is not UTF-8: such a
        // folder is read again on the next scan, not watched.
        if (!watched.contains(folder) && FileNames::display(folder) == folder)
            added.append(folder);
    }
    if (added.isEmpty())
        return;
    m_watcher.addPaths(added);
    // A folder watched only now may have changed after the scan listed it.
    for (const QString& folder : qAsConst(added)) {
        if (QFileInfo(folder).lastModified() >= m_scanner->listedAt()) {
            m_watchDebounce.start();
            break;
        }
    }
}

void LibraryWorker::on_watcher_directoryChanged()
{
    m_watchDebounce.start();
}

CMNode* LibraryWorker::nodeFor(const CMPath& path)
{
    if (CMNode* node = nodes()->find(path))
        return node;
    const QStringList parts = path.splitBase();
    return parts.size() == 2 ? nodes()->find(LibraryPaths::at(QLatin1Char('/') + parts.first())) : nullptr;
}

void LibraryWorker::setDataRequest(const CMSetDataRequest& request)
{
    runOnThread([this, request]() {
        const CMPath& path = request.path();
        if (path.prefix() == LibraryPaths::Prefix && path.path() == LibraryPaths::rescan().path()) {
            startScan();
            VexaValue done;
            done.setBool_(true);
            request.reply().setData(VexaActionReply::withValue(done).toVariant());
            return;
        }
        if (path.prefix() == LibraryPaths::Prefix && path.path() == LibraryPaths::prepareItems().path()) {
            answerPrepareItems(request);
            return;
        }
        CMNode* node = nodeFor(path);
        if (!node || !node->setDataRequest(request))
            request.reply().setError(invalidPathError(path));
    });
}

void LibraryWorker::answerPrepareItems(const CMSetDataRequest& request)
{
    QVariantList items;
    for (const LibraryEntry& track : m_browser->tracksOf(request.value().toStringList()))
        items.append(LibraryRoles::itemOf(track).toHash());
    request.reply().setData(items);
}

void LibraryWorker::getRows(const CMGetRowsRequest& request)
{
    runOnThread([this, request]() {
        CMNode* node = nodeFor(request.path());
        if (!node || !node->getRowsRequest(request))
            request.reply().setError(invalidPathError(request.path()));
    });
}

void LibraryWorker::getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply)
{
    runOnThread([this, path, roleNames, reply]() {
        // An entry answers the roles of its own row, not those of the list node that pages it.
        if (const std::optional<LibraryEntry> entry = m_browser->entryOf(path)) {
            const VexaRoles all = LibraryRoles::rowOf(*entry);
            VexaRoles roles;
            for (const QString& name : roleNames) {
                if (name == QLatin1String("*"))
                    roles = all;
                else if (all.contains(name))
                    roles.insert(name, all.value(name));
            }
            reply.setData(roles.toVariant());
            return;
        }
        CMNode* node = nodeFor(path);
        if (node && (nodes()->find(path) || m_browser->holds(path)))
            reply.setData(node->getDataRoles(roleNames, path.params()).toVariant());
        else
            reply.setError(invalidPathError(path));
    });
}
