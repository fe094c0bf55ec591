#include "Collection.h"

#include "Database.h"
#include "NameOrder.h"
#include "PlayListBase.h"
#include "PlayListsLog.h"

Collection::Collection(Database* db, const CollectionRecord& record, QList<PlayListBase*> playlists)
    : m_db(db)
    , m_record(new CollectionRecord(record))
    , m_playlists(playlists)
{
}

Collection::~Collection() = default;

int Collection::getUid() const
{
    return m_record->uid;
}

QString Collection::getName() const
{
    return m_record->name;
}

bool Collection::valid() const
{
    return m_record->uid != -1;
}

bool Collection::remove()
{
    const bool removed = m_db->deleteCollection(*m_record);
    if (removed)
        m_record->uid = -1;
    return removed;
}

bool Collection::addPlayList(PlayListBase* playList)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "this=" << m_record->uid << " pl=" << playList->getUid());
    if (!m_db->addToCollection(*m_record, playList->getUid())) {
        LOG4CPLUS_ERROR(logger,
                        "Unable to add pl to collection, this=" << m_record->uid << " pl=" << playList->getUid());
        return false;
    }
    NameOrder::insert(m_playlists, playList);
    emit playlistAdded();
    return true;
}

bool Collection::removePlayList(PlayListBase* playList)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "this=" << m_record->uid << " pl=" << playList->getUid());
    const bool removed = m_db->removeFromCollection(*m_record, playList->getUid());
    if (removed) {
        m_playlists.removeAll(playList);
        emit playlistRemoved();
    }
    return removed;
}

const QList<PlayListBase*>& Collection::getPlayLists() const
{
    return m_playlists;
}
