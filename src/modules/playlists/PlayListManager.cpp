#include "PlayListManager.h"

#include "Collection.h"
#include "Database.h"
#include "NameOrder.h"
#include "PlayList.h"
#include "PlayListsLog.h"

#include <algorithm>

PlayListManager::PlayListManager(Database* db)
    : QObject(nullptr)
    , m_db(db)
    , m_playQueue(nullptr)
{
    initPlayLists();
    initCollections();
}

PlayListManager::~PlayListManager()
{
    qDeleteAll(m_collections);
    qDeleteAll(m_playLists);
    delete m_playQueue;
}

void PlayListManager::initPlayLists()
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "");
    m_playQueue = new PlayList(m_db, m_db->getPlayQueue());
    // The play queue starts empty at every start of the module.
    m_playQueue->clearItems();
    // The store lists them in name order already.
    const QList<PlayListRecord> records = m_db->getPlayLists();
    for (const PlayListRecord& record : records)
        m_playLists.append(new PlayList(m_db, record));
}

void PlayListManager::initCollections()
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "");
    const QList<CollectionRecord> records = m_db->getCollections();
    for (const CollectionRecord& record : records) {
        QList<PlayListBase*> members;
        for (int uid : record.playlists) {
            PlayListBase* pl = getPlayListByUid(uid);
            // A member the store does not know means a broken store; it is
            // not repaired here.
            if (!pl)
                PlayListsLog::fatalStop(PlayListsLog::logger(), QStringLiteral("Unknown playlist in collection"));
            members.append(pl);
        }
        m_collections.append(new Collection(m_db, record, members));
    }
}

PlayListBase* PlayListManager::getPlayQueue()
{
    return m_playQueue;
}

const QList<PlayListBase*>& PlayListManager::getAllPlayList()
{
    return m_playLists;
}

const QList<CollectionBase*>& PlayListManager::getAllCollection()
{
    return m_collections;
}

PlayListBase* PlayListManager::getPlayListByUid(int uid) const
{
    if (uid == 0)
        return m_playQueue;
    for (PlayListBase* pl : m_playLists) {
        if (pl->getUid() == uid)
            return pl;
    }
    return nullptr;
}

CollectionBase* PlayListManager::getCollectionByUid(int uid) const
{
    for (CollectionBase* col : m_collections) {
        if (col->getUid() == uid)
            return col;
    }
    return nullptr;
}

QList<CollectionBase*> PlayListManager::getCollections(int from, int to)
{
    const int last = m_collections.size() - 1;
    from = std::min(std::max(from, 0), last);
    to = std::min(std::max(to, 0), last);
    if (to < from)
        from = to;
    // Only an empty list leaves a negative position here.
    if (from < 0)
        PlayListsLog::fatalStop(PlayListsLog::logger(), QStringLiteral("Collection index out of range"));
    return m_collections.mid(from, to - from + 1);
}

int PlayListManager::getPlayListsCount()
{
    return m_db->countPlaylists();
}

int PlayListManager::getPlaylistsItemsCount()
{
    return m_db->countPlaylistsItems();
}

int PlayListManager::getCollectionsCount()
{
    return m_db->countCollections();
}

VexaPlayListItem PlayListManager::getPlayListItemByUid(int uid)
{
    return m_db->getItemByUid(uid);
}

PlayListBase* PlayListManager::createPlayList(const QString& name)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "name=" << name);
    PlayList* pl = new PlayList(m_db, m_db->createPlayList(name));
    if (!pl->valid()) {
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Unable to create PlayList " << name << " in database");
        delete pl;
        return nullptr;
    }
    NameOrder::insert<PlayListBase>(m_playLists, pl);
    emit playlistCreated(pl->getUid());
    return pl;
}

bool PlayListManager::deletePlayList(PlayListBase* pl)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    const int uid = pl->getUid();
    VEXA_LOG_ENTER(TRACE, logger, "pl->uid=" << uid);
    // Leave every collection first; a collection that refuses keeps the
    // playlist, the others go on.
    const QList<CollectionBase*> collections = m_collections;
    for (CollectionBase* col : collections) {
        if (col->getPlayLists().contains(pl) && !col->removePlayList(pl)) {
            LOG4CPLUS_ERROR(logger, "Unable to remove playlist (" << uid << ") from collection (" << col->getUid()
                                                                  << ")");
        }
    }
    if (!pl->remove()) {
        LOG4CPLUS_ERROR(logger, "Unable to delete PlayList uid=" << uid << " from database");
        return false;
    }
    m_playLists.removeAll(pl);
    LOG4CPLUS_DEBUG(logger, "Deleted PlayList uid=" << uid);
    emit playlistDeleted(uid);
    delete pl;
    return true;
}

bool PlayListManager::deletePlayList(int uid)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "uid=" << uid);
    PlayListBase* pl = getPlayListByUid(uid);
    if (!pl) {
        LOG4CPLUS_WARN(PlayListsLog::logger(), "Can't delete non-existant PlayList uid=" << uid);
        return false;
    }
    return deletePlayList(pl);
}

CollectionBase* PlayListManager::createCollection(const QString& name)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "name=" << name);
    Collection* col = new Collection(m_db, m_db->createCollection(name), QList<PlayListBase*>());
    if (!col->valid()) {
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Unable to create collection " << name << " in database");
        delete col;
        return nullptr;
    }
    NameOrder::insert<CollectionBase>(m_collections, col);
    emit collectionCreated(col->getUid());
    return col;
}

bool PlayListManager::deleteCollection(CollectionBase* col)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    const int uid = col->getUid();
    VEXA_LOG_ENTER(TRACE, logger, "col->uid=" << uid);
    if (!col->remove()) {
        LOG4CPLUS_ERROR(logger, "Unable to remove collection uid=" << uid << " from database");
        return false;
    }
    m_collections.removeAll(col);
    LOG4CPLUS_DEBUG(logger, "Deleted collection uid=" << uid);
    emit collectionDeleted(uid);
    delete col;
    return true;
}

bool PlayListManager::deleteCollection(int uid)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "uid=" << uid);
    CollectionBase* col = getCollectionByUid(uid);
    if (!col) {
        LOG4CPLUS_WARN(PlayListsLog::logger(), "Can't delete non-existant collection uid=" << uid);
        return false;
    }
    return deleteCollection(col);
}
