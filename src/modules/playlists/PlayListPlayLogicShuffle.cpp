// The shuffle order of the current playlist: a permutation of its sequence
// numbers with a cursor on the playing entry, kept in step with every change
// of the list. rand() is seeded from the clock on each new draw.
#include "PlayListPlayLogic.h"

#include "PlayListBase.h"

#include "VexaLog.h"
#include "VexaPlayListAddPosition.h"

#include <cstdlib>
#include <ctime>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance(LOG4CPLUS_TEXT("PlayListsPlayLogic"));
}

} // namespace

void PlayListPlayLogic::setShuffleEnabled(bool enabled)
{
    VEXA_LOG_ENTER(TRACE, logger(), "enabled=" << boolText(enabled));
    m_shuffleEnabled = enabled;
    if (!m_currentPlayList)
        return;
    m_currentPlayList->setShuffle(enabled);
    if (enabled)
        initShuffle(m_currentPlayList->getLastSequenceNumber());
}

void PlayListPlayLogic::initShuffle(int startItem)
{
    VEXA_LOG_ENTER(TRACE, logger(), "startItem: " << startItem);
    if (!m_currentPlayList) {
        m_shuffleSeq.clear();
        m_shuffleCurIndex = -1;
        return;
    }
    const int size = m_currentPlayList->getSize();
    if (size < 1) {
        LOG4CPLUS_TRACE(logger(), "size <= 0");
        return;
    }
    m_shuffleSeq.resize(size);
    for (int i = 0; i < size; ++i)
        m_shuffleSeq[i] = i;
    randomizeShuffleItems(0);
    if (startItem < 0) {
        debugShuffleItems();
        m_shuffleCurIndex = 0;
        return;
    }
    // The entry that plays when shuffle starts comes first, the cursor on it.
    const int index = m_shuffleSeq.indexOf(startItem);
    LOG4CPLUS_TRACE(logger(), "index of startItem in sequence: " << index);
    if (index >= 0) {
        m_shuffleSeq.remove(index);
        m_shuffleSeq.prepend(startItem);
    }
    debugShuffleItems();
    m_shuffleCurIndex = 0;
}

void PlayListPlayLogic::randomizeShuffleItems(int from)
{
    VEXA_LOG_ENTER(TRACE, logger(), "from: " << from);
    srand(time(nullptr));
    if (from < 0 || from >= m_shuffleSeq.size())
        return;
    for (int i = from + 1; i < m_shuffleSeq.size(); ++i) {
        const int j = from + rand() % (i - from + 1);
        if (j != i)
            std::swap(m_shuffleSeq[i], m_shuffleSeq[j]);
    }
}

int PlayListPlayLogic::getNextShuffleItem()
{
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex before next: " << m_shuffleCurIndex);
    int result = -1;
    if (m_shuffleSeq.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), "error: m_shuffleSeq.size: " << m_shuffleSeq.size());
    } else if (m_shuffleCurIndex >= 0 && m_shuffleCurIndex + 1 < m_shuffleSeq.size()) {
        result = m_shuffleSeq.at(++m_shuffleCurIndex);
    } else if (m_repeatMode == RepeatAll) {
        // A new pass gets a new order.
        m_shuffleCurIndex = 0;
        randomizeShuffleItems(0);
        result = m_shuffleSeq.at(0);
        LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex is set to first item in m_shuffleSeq");
    }
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex after next: " << m_shuffleCurIndex);
    LOG4CPLUS_TRACE(logger(), "index: " << result);
    return result;
}

int PlayListPlayLogic::getPrevShuffleItem()
{
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex before prev: " << m_shuffleCurIndex);
    int result = -1;
    if (m_shuffleSeq.isEmpty()) {
        LOG4CPLUS_TRACE(logger(), "error: m_shuffleSeq.size: " << m_shuffleSeq.size());
    } else if (m_shuffleCurIndex > 0 && m_shuffleCurIndex < m_shuffleSeq.size()) {
        result = m_shuffleSeq.at(--m_shuffleCurIndex);
    } else if (m_repeatMode == RepeatAll) {
        m_shuffleCurIndex = m_shuffleSeq.size() - 1;
        result = m_shuffleSeq.last();
        LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex is set to last item in m_shuffleSeq");
    }
    LOG4CPLUS_TRACE(logger(), "m_shuffleCurIndex after prev: " << m_shuffleCurIndex);
    LOG4CPLUS_TRACE(logger(), "index: " << result);
    return result;
}

void PlayListPlayLogic::debugShuffleItems()
{
    VEXA_LOG_ENTER(TRACE, logger(), "m_shuffleSeq.size(): " << m_shuffleSeq.size());
    for (int i = 0; i < m_shuffleSeq.size(); ++i)
        LOG4CPLUS_TRACE(logger(), "m_shuffleSeq entry: #" << i << " " << m_shuffleSeq.at(i));
}

void PlayListPlayLogic::shuffleItemsRemoved(const QList<int>& indices)
{
    // Each removed number is matched against the order as the earlier
    // ones of this call left it.
    for (int removed : indices) {
        int j = 0;
        while (j < m_shuffleSeq.size()) {
            if (m_shuffleSeq.at(j) == removed) {
                m_shuffleSeq.remove(j);
                if (m_shuffleCurIndex >= j)
                    --m_shuffleCurIndex;
            } else {
                if (m_shuffleSeq.at(j) > removed)
                    --m_shuffleSeq[j];
                ++j;
            }
        }
    }
}

void PlayListPlayLogic::shuffleItemMoved(int from, int to)
{
    for (int& element : m_shuffleSeq) {
        if (element == from)
            element = to;
        else if (element == to)
            element = from;
    }
}

void PlayListPlayLogic::shuffleItemsAdded(int position, int firstSeqNum, int count)
{
    if (position == VexaPlayListAddPosition::Now || position == VexaPlayListAddPosition::Next) {
        // Entries added after the current one play next, in the order given.
        for (int& element : m_shuffleSeq) {
            if (element >= firstSeqNum)
                element += count;
        }
        for (int k = 0; k < count; ++k)
            m_shuffleSeq.insert(m_shuffleCurIndex + 1 + k, firstSeqNum + k);
    } else if (position == VexaPlayListAddPosition::Append) {
        for (int k = 0; k < count; ++k) {
            m_shuffleSeq.append(firstSeqNum + k);
            randomizeShuffleItems(m_shuffleCurIndex + 1);
        }
    } else {
        LOG4CPLUS_ERROR(logger(), "Unknown position specifier: " << VexaPlayListAddPosition::toString(position));
    }
}
