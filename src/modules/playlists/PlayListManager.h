#pragma once

#include "VexaPlayListItem.h"

#include <QList>
#include <QObject>
#include <QString>

class CollectionBase;
class Database;
class PlayListBase;

// Owns every playlist, the play queue and every collection. Loads them from
// the store once, creates and deletes them, hands out pointers by uid and
// announces creations and deletions. Both lists are kept in locale name order
// as elements arrive; renaming does not re-sort.
class PlayListManager : public QObject
{
    Q_OBJECT

public:
    explicit PlayListManager(Database* db);
    ~PlayListManager() override;

    PlayListBase* getPlayQueue();
    // All playlists but the play queue.
    const QList<PlayListBase*>& getAllPlayList();
    const QList<CollectionBase*>& getAllCollection();
    // Uid 0 is the play queue.
    PlayListBase* getPlayListByUid(int uid) const;
    CollectionBase* getCollectionByUid(int uid) const;
    // The collections from..to, both clamped into the list; callers ask only
    // when there is at least one collection.
    QList<CollectionBase*> getCollections(int from, int to);

    // Counts as the store has them.
    int getPlayListsCount();
    int getPlaylistsItemsCount();
    int getCollectionsCount();
    VexaPlayListItem getPlayListItemByUid(int uid);

    PlayListBase* createPlayList(const QString& name);
    bool deletePlayList(PlayListBase* pl);
    bool deletePlayList(int uid);
    CollectionBase* createCollection(const QString& name);
    bool deleteCollection(CollectionBase* col);
    bool deleteCollection(int uid);

signals:
    void playlistCreated(int plid);
    void playlistDeleted(int plid);
    void collectionCreated(int clid);
    void collectionDeleted(int clid);

private:
    void initPlayLists();
    void initCollections();

    Database* m_db;
    PlayListBase* m_playQueue;
    QList<PlayListBase*> m_playLists;
    QList<CollectionBase*> m_collections;
};
