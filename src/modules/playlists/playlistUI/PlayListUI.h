#pragma once

#include <QHash>
#include <QList>
#include <QObject>

#include "CMPath.h"

class BaseNode;
class CMNodes;
class CMSubscribe;
class CollectionBase;
class PlayListManager;
class PlayListWatcher;

// The owner of the browse tree: it registers every node at its path, keeps a
// watcher per playlist, and turns the model's signals into notifications.
class PlayListUI : public QObject
{
    Q_OBJECT

public:
    PlayListUI(QObject* parent, CMNodes* nodes, CMSubscribe* subscribe, PlayListManager* manager);
    ~PlayListUI() override;

public slots:
    void on_playlist_create(int plid);
    void on_playlist_delete(int plid);
    void on_collection_create(int clid);
    void on_collection_delete(int clid);
    void on_collection_changed();

private:
    void watchPlayList(int uid);
    void watchCollection(CollectionBase* collection);
    void reset(const CMPath& path);

    QList<BaseNode*> m_nodes;
    QHash<int, PlayListWatcher*> m_watchers;
    CMNodes* m_registry;
    CMSubscribe* m_subscribe;
    PlayListManager* m_manager;
};
