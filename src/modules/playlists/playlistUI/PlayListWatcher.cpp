#include "playlistUI/PlayListWatcher.h"

#include "playlistUI/BaseNode.h"
#include "PlayListBase.h"
#include "PlayListsLog.h"
#include "PlayListsVocabulary.h"

#include "CMSubscribe.h"
#include "VexaConnect.h"
#include "VexaPaths.h"

PlayListWatcher::PlayListWatcher(QObject* parent, CMSubscribe* subscribe, PlayListBase* playlist, BaseNode* itemsNode)
    : QObject(parent), m_subscribe(subscribe), m_uid(playlist->getUid()), m_itemsNode(itemsNode)
{
    vexaConnect(playlist, "2itemsAdded(QString,int,int)", this, "1on_items_added(QString,int,int)");
    vexaConnect(playlist, "2itemsRemoved(QList<int>,int)", this, "1on_items_removed(QList<int>,int)");
    vexaConnect(playlist, "2itemMoved(int,int)", this, "1on_items_moved(int,int)");
    vexaConnect(playlist, "2itemsCleared()", this, "1on_items_cleared()");
    vexaConnect(playlist, "2shuffleChanged(bool)", this, "1on_playlist_changed(bool)");
    vexaConnect(playlist, "2repeatAllChanged(bool)", this, "1on_playlist_changed(bool)");
    vexaConnect(playlist, "2nameChanged(QString)", this, "1on_playlistName_changed(QString)");
}

void PlayListWatcher::on_items_added(QString, int firstSeqNum, int count)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    LOG4CPLUS_TRACE(logger, "firstSeqIndex: " << firstSeqNum << " count: " << count);
    QStringList changes;
    for (int i = firstSeqNum; i < firstSeqNum + count; ++i)
        changes.append(QStringLiteral("+%1").arg(i));
    const CMPath path = itemsPathOf(m_uid);
    LOG4CPLUS_TRACE(logger, "itemsChanged: " << changes);
    LOG4CPLUS_TRACE(logger, "path: " << path);
    m_subscribe->rowsChanged(path, changes, 0, -1);
}

void PlayListWatcher::on_items_removed(QList<int>, int)
{
    restartPlayListView(m_uid);
}

void PlayListWatcher::on_items_moved(int, int)
{
    restartPlayListView(m_uid);
    m_subscribe->changedStartingWith(VexaPlayListPlTrackContextPath(), CMSubscribe::RowsChangeReset(), -1, -1);
}

void PlayListWatcher::on_items_cleared()
{
    restartPlayListView(m_uid);
}

void PlayListWatcher::on_playlist_changed(bool)
{
    const CMPath menu = m_uid == 0 ? VexaPlayListPqContextPath() : VexaPlayListPlContextPath();
    m_subscribe->changedStartingWith(menu, CMSubscribe::RowsChangeReset(), -1, -1);
}

void PlayListWatcher::on_playlistName_changed(QString)
{
    m_subscribe->changedStartingWith(VexaPlayListsRootPath(), CMSubscribe::RowsChangeReset(), -1, -1);
    m_subscribe->changedStartingWith(VexaPlayListPlContextPath(), CMSubscribe::RowsChangeReset(), -1, -1);
}

void PlayListWatcher::restartPlayListView(int uid)
{
    m_subscribe->changedStartingWith(itemsPathOf(uid), CMSubscribe::RowsChangeReset(), -1, -1);
}
