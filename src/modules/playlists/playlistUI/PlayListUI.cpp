#include "playlistUI/PlayListUI.h"

#include "PlayListsVocabulary.h"

#include "playlistUI/BaseNode.h"
#include "CollectionBase.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "playlistUI/PlayListWatcher.h"
#include "playlistUI/RootNode.h"
#include "collection/CollectionAddToClNode.h"
#include "collection/CollectionContextNode.h"
#include "collection/CollectionGetItemsNode.h"
#include "playlist/PlayListAddModeNode.h"
#include "playlist/PlayListAddToPlaylistNode.h"
#include "playlist/PlayListContextNode.h"
#include "playlist/PlayListGetItemsNode.h"
#include "playlist/PlayListGetListNode.h"
#include "playlist/PlayListTrackContextNode.h"
#include "playqueue/PlayQueueContextNode.h"
#include "playqueue/PlayQueueGetItemsNode.h"

#include "CMSubscribe.h"
#include "VexaConnect.h"
#include "VexaPaths.h"

PlayListUI::PlayListUI(QObject* parent, CMNodes* nodes, CMSubscribe* subscribe, PlayListManager* manager)
    : QObject(parent), m_registry(nodes), m_subscribe(subscribe), m_manager(manager)
{
    m_nodes.append(RootNode::create(nodes, VexaPlayListsRootPath(), manager));
    m_nodes.append(PlayQueueContextNode::create(nodes, VexaPlayListPqContextPath(), manager));
    m_nodes.append(PlayListGetListNode::create(nodes, VexaPlayListPlGetlistPath(), manager));
    m_nodes.append(PlayListAddToPlaylistNode::create(nodes, VexaPlayListPlAddToPlaylistPath(), manager));
    m_nodes.append(PlayListAddModeNode::create(nodes, VexaPlayListPlSelectAddModePath(), manager));
    m_nodes.append(PlayListContextNode::create(nodes, VexaPlayListPlContextPath(), manager));
    m_nodes.append(PlayListTrackContextNode::create(nodes, VexaPlayListPlTrackContextPath(), manager));
    m_nodes.append(CollectionGetItemsNode::create(nodes, VexaPlayListClGetItemsPath(), manager));
    m_nodes.append(CollectionAddToClNode::create(nodes, VexaPlayListClAddtoCollectionPath(), manager));
    m_nodes.append(CollectionContextNode::create(nodes, VexaPlayListClContextPath(), manager));

    PlayListBase* playQueue = manager->getPlayQueue();
    BaseNode* queueNode = PlayQueueGetItemsNode::create(nodes, VexaPlayListPqGetItemsPath(), manager);
    m_watchers.insert(playQueue->getUid(), new PlayListWatcher(this, subscribe, playQueue, queueNode));
    for (PlayListBase* playlist : manager->getAllPlayList())
        watchPlayList(playlist->getUid());
    for (CollectionBase* collection : manager->getAllCollection())
        watchCollection(collection);

    vexaConnect(manager, "2playlistCreated(int)", this, "1on_playlist_create(int)");
    vexaConnect(manager, "2playlistDeleted(int)", this, "1on_playlist_delete(int)");
    vexaConnect(manager, "2collectionCreated(int)", this, "1on_collection_create(int)");
    vexaConnect(manager, "2collectionDeleted(int)", this, "1on_collection_delete(int)");
}

PlayListUI::~PlayListUI()
{
    for (PlayListWatcher* watcher : m_watchers.values())
        watcher->deleteLater();
    for (BaseNode* node : m_nodes)
        node->release();
    m_nodes.clear();
}

void PlayListUI::watchPlayList(int uid)
{
    PlayListBase* playlist = m_manager->getPlayListByUid(uid);
    const CMPath path = itemsPathOf(uid);
    // A tracks node outlives its playlist; a new playlist with the same uid takes it over.
    auto* itemsNode = dynamic_cast<BaseNode*>(m_registry->find(path));
    if (!itemsNode)
        itemsNode = PlayListGetItemsNode::create(m_registry, path, m_manager);
    m_watchers.insert(uid, new PlayListWatcher(this, m_subscribe, playlist, itemsNode));
}

void PlayListUI::watchCollection(CollectionBase* collection)
{
    vexaConnect(collection, "2playlistAdded()", this, "1on_collection_changed()");
    vexaConnect(collection, "2playlistRemoved()", this, "1on_collection_changed()");
}

void PlayListUI::reset(const CMPath& path)
{
    m_subscribe->changedStartingWith(path, CMSubscribe::RowsChangeReset(), -1, -1);
}

void PlayListUI::on_playlist_create(int plid)
{
    if (m_manager->getPlayListByUid(plid))
        watchPlayList(plid);
    reset(VexaPlayListsRootPath());
    reset(VexaPlayListPlAddToPlaylistPath());
    reset(VexaPlayListPlGetlistPath());
}

void PlayListUI::on_playlist_delete(int plid)
{
    // The playlist's tracks node stays registered and answers an empty list.
    if (PlayListWatcher* watcher = m_watchers.take(plid))
        watcher->deleteLater();
    reset(VexaPlayListsRootPath());
    reset(VexaPlayListPlAddToPlaylistPath());
}

void PlayListUI::on_collection_create(int clid)
{
    if (CollectionBase* collection = m_manager->getCollectionByUid(clid))
        watchCollection(collection);
    reset(VexaPlayListsRootPath());
    reset(VexaPlayListClAddtoCollectionPath());
}

void PlayListUI::on_collection_delete(int)
{
    reset(VexaPlayListsRootPath());
    reset(VexaPlayListClAddtoCollectionPath());
}

void PlayListUI::on_collection_changed()
{
    reset(VexaPlayListClGetItemsPath());
}
