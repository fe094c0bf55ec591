#pragma once

#include "CollectionBase.h"
#include "CollectionRecord.h"

#include <memory>

class Database;

// A collection over the store. The member playlists belong to the manager;
// whether a playlist may join or leave is the store's answer alone.
class Collection : public CollectionBase
{
    Q_OBJECT

public:
    Collection(Database* db, const CollectionRecord& record, QList<PlayListBase*> playlists);
    ~Collection() override;

    int getUid() const override;
    QString getName() const override;
    bool valid() const override;
    bool remove() override;
    bool addPlayList(PlayListBase* playList) override;
    bool removePlayList(PlayListBase* playList) override;
    const QList<PlayListBase*>& getPlayLists() const override;

private:
    Database* m_db;
    std::unique_ptr<CollectionRecord> m_record;
    QList<PlayListBase*> m_playlists;
};
