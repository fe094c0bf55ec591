#include "PlayList.h"

#include "Database.h"
#include "PlayListsLog.h"
#include "VexaJson.h"
#include "VexaPaths.h"

#include <QMutexLocker>

#include <algorithm>

PlayList::PlayList(Database* db, const PlayListRecord& record)
    : m_db(db)
    , m_record(new PlayListRecord(record))
    , m_mutex(QMutex::Recursive)
{
}

PlayList::~PlayList() = default;

int PlayList::getUid() const
{
    return m_record->uid;
}

QString PlayList::getName() const
{
    return m_record->name;
}

void PlayList::setName(const QString& name)
{
    QMutexLocker lock(&m_mutex);
    // No comparison: renaming to the same name still writes and signals.
    m_record->name = name;
    updateDatabase();
    emit nameChanged(name);
}

bool PlayList::getShuffle() const
{
    return m_record->shuffle;
}

void PlayList::setShuffle(bool value)
{
    QMutexLocker lock(&m_mutex);
    if (m_record->shuffle == value)
        return;
    m_record->shuffle = value;
    updateDatabase();
    emit shuffleChanged(m_record->shuffle);
}

bool PlayList::getRepeatAll() const
{
    return m_record->repeatAll;
}

void PlayList::setRepeatAll(bool value)
{
    QMutexLocker lock(&m_mutex);
    if (m_record->repeatAll == value)
        return;
    m_record->repeatAll = value;
    updateDatabase();
    emit repeatAllChanged(m_record->repeatAll);
}

int PlayList::getLastSequenceNumber() const
{
    return m_record->lastPlayedIndex;
}

void PlayList::setLastSequenceNumber(int sequenceNumber)
{
    QMutexLocker lock(&m_mutex);
    m_record->lastPlayedIndex = sequenceNumber;
    updateDatabase();
}

int PlayList::getSize() const
{
    return m_record->size;
}

QList<VexaPlayListItem> PlayList::getItems(int from, int to)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "from=" << from << " to=" << to);
    QMutexLocker lock(&m_mutex);
    return m_db->getItems(*m_record, from, to);
}

int PlayList::removeItems(const QList<int>& indices)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "indices=" << indices);
    QList<int> sorted = indices;
    std::sort(sorted.begin(), sorted.end());

    QMutexLocker lock(&m_mutex);
    const int removed = m_db->removeItems(*m_record, sorted);
    if (removed > 0) {
        // Entries removed in front of the last played one move it forward;
        // removing that entry itself leaves the index on the one after it.
        const int last = getLastSequenceNumber();
        const int before = int(std::count_if(sorted.cbegin(), sorted.cend(), [last](int index) { return index < last; }));
        if (before > 0)
            setLastSequenceNumber(last - before);
        m_record->size -= removed;
        emit itemsRemoved(sorted, last);
    }
    return removed;
}

bool PlayList::moveItem(int from, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "from=" << from << " to=" << to);
    // The bound is the count itself, not the last index.
    from = std::min(from, getSize());
    to = std::min(to, getSize());
    if (from == to)
        return true;

    const int last = getLastSequenceNumber();
    LOG4CPLUS_TRACE(logger, "lastPlayedSeqNum: " << last);
    bool moved;
    {
        QMutexLocker lock(&m_mutex);
        moved = m_db->moveItem(*m_record, from, to);
    }
    if (!moved)
        return false;

    // Keep the last played index on the same entry.
    if (from > last && to <= last) {
        setLastSequenceNumber(last + 1);
        LOG4CPLUS_TRACE(logger, "setLastSequenceNumber(lastPlayedSeqNum + 1): " << getLastSequenceNumber());
    } else if (from == last) {
        setLastSequenceNumber(to);
        LOG4CPLUS_TRACE(logger, "setLastSequenceNumber(toIndex): " << to);
    } else if (from < last && last <= to) {
        setLastSequenceNumber(last - 1);
        LOG4CPLUS_TRACE(logger, "setLastSequenceNumber(lastPlayedSeqNum - 1): " << getLastSequenceNumber());
    }
    emit itemMoved(from, to);
    return true;
}

bool PlayList::moveItems(QList<int> indices, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "indices=" << indices << " to=" << to);
    const int count = indices.size();
    LOG4CPLUS_TRACE(logger, "indicies.size(): " << count);
    if (count == 0) {
        LOG4CPLUS_TRACE(logger, "indicies.size() is 0, returning");
        return false;
    }
    if (indices.first() > to) {
        // Towards the front: the first index goes to the target, the next
        // one behind it, and so on.
        for (int i = 0; i < count; ++i) {
            if (!moveItem(indices.at(i), to + i))
                return false;
        }
    } else {
        // Towards the back, from the last index down; the last index is
        // paired with the smallest target on purpose.
        for (int j = count - 1; j >= 0; --j) {
            if (!moveItem(indices.at(j), to - j))
                return false;
        }
    }
    return true;
}

int PlayList::addItems(VexaPlayListAddPosition::Enum position, const QList<VexaPlayListItem>& items)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(),
                        "position=" << VexaPlayListAddPosition::toString(position) << " count=" << items.size());
    QMutexLocker lock(&m_mutex);
    int added = 0;
    const int first = m_db->addItems(*m_record, position, items, &added);
    if (first < 0)
        return -1;
    m_record->size += added;
    emit itemsAdded(VexaPlayListAddPosition::toString(position), first, added);
    return added;
}

int PlayList::addItemsOf(VexaPlayListAddPosition::Enum position, PlayListBase* source, bool move)
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "position=" << VexaPlayListAddPosition::toString(position)
                                                              << " source=" << source->getUid() << " move=" << move);
    auto* from = qobject_cast<PlayList*>(source);
    if (!from || from == this)
        return -1;
    QMutexLocker lock(&m_mutex);
    QMutexLocker sourceLock(&from->m_mutex);
    int added = 0;
    const int first = m_db->addItemsOf(*m_record, *from->m_record, position, move, &added);
    if (first < 0)
        return -1;
    m_record->size += added;
    if (move)
        from->m_record->size -= added;
    emit itemsAdded(VexaPlayListAddPosition::toString(position), first, added);
    return added;
}

bool PlayList::clearItems()
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "");
    if (m_record->size == 0) {
        setLastSequenceNumber(-1);
        return true;
    }
    const bool cleared = m_db->clearItems(*m_record);
    if (cleared) {
        m_record->size = 0;
        setLastSequenceNumber(-1);
        emit itemsCleared();
    }
    return cleared;
}

bool PlayList::remove()
{
    return m_db->deletePlayList(*m_record);
}

VexaRoles PlayList::itemToVexaRoles(const VexaPlayListItem& item) const
{
    QString error;
    const QVariant parsed = VexaJson::parse(item.vexaRoles().toUtf8(), &error);
    VexaRoles roles(parsed.toHash());
    if (!error.isEmpty()) {
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Failed to parse data, error: " << error);
        return VexaRoles();
    }

    roles.setId(QString::number(item.uid()));
    VexaValue value;
    value.setI32_(item.sequenceNumber());
    roles.setValue(value);
    roles.setPath(VexaPlayListItemPath().appended(QString::number(item.uid())));

    // Tracks are played through this module's play logic.
    if (roles.contains(VexaRoles::MediaData())) {
        VexaMediaData mediaData = roles.mediaData();
        if (mediaData.contains(VexaMediaData::MetaData())) {
            VexaMetaData metaData = mediaData.metaData();
            metaData.setPlayLogicPath(VexaPlayListsPlayLogicPath());
            mediaData.setMetaData(metaData);
            roles.setMediaData(mediaData);
        }
    }
    return roles;
}

bool PlayList::valid() const
{
    return m_record->uid != -1;
}

bool PlayList::updateDatabase() const
{
    return m_db->updatePlayList(*m_record);
}
