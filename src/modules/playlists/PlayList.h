#pragma once

#include "PlayListBase.h"
#include "PlayListRecord.h"

#include <QMutex>

#include <memory>

class Database;

// A playlist over the store. It caches its record, writes every change
// through to the store and keeps the cache in step with what the store did;
// the record is never re-read.
//
// The recursive mutex is held across the store call, the cache update and
// the signal of the setters and of getItems, addItems and removeItems, so a
// directly connected slot may call back into the same playlist.
class PlayList : public PlayListBase
{
    Q_OBJECT

public:
    PlayList(Database* db, const PlayListRecord& record);
    ~PlayList() override;

    int getUid() const override;
    QString getName() const override;
    void setName(const QString& name) override;
    bool getShuffle() const override;
    void setShuffle(bool value) override;
    bool getRepeatAll() const override;
    void setRepeatAll(bool value) override;
    int getLastSequenceNumber() const override;
    void setLastSequenceNumber(int sequenceNumber) override;
    int getSize() const override;
    QList<VexaPlayListItem> getItems(int from, int to) override;
    int removeItems(const QList<int>& indices) override;
    bool moveItem(int from, int to) override;
    bool moveItems(QList<int> indices, int to) override;
    int addItems(VexaPlayListAddPosition::Enum position, const QList<VexaPlayListItem>& items) override;
    int addItemsOf(VexaPlayListAddPosition::Enum position, PlayListBase* source, bool move) override;
    bool clearItems() override;
    bool remove() override;
    VexaRoles itemToVexaRoles(const VexaPlayListItem& item) const override;

    // False for a record the store did not create.
    bool valid() const;
    // Writes the cached record back to the store.
    bool updateDatabase() const;

private:
    Database* m_db;
    std::unique_ptr<PlayListRecord> m_record;
    QMutex m_mutex;
};
