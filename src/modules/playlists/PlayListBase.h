#pragma once

#include "VexaPlayListAddPosition.h"
#include "VexaPlayListItem.h"
#include "VexaRoles.h"

#include <QList>
#include <QObject>
#include <QString>

// A playlist as everyone outside the model sees it: its settings, its
// entries and the signals that announce every change of them.
class PlayListBase : public QObject
{
    Q_OBJECT

public:
    ~PlayListBase() override;

    virtual int getUid() const = 0;
    virtual QString getName() const = 0;
    virtual void setName(const QString& name) = 0;
    virtual bool getShuffle() const = 0;
    virtual void setShuffle(bool value) = 0;
    virtual bool getRepeatAll() const = 0;
    virtual void setRepeatAll(bool value) = 0;
    // The sequence number of the entry played last; -1 when none.
    virtual int getLastSequenceNumber() const = 0;
    virtual void setLastSequenceNumber(int sequenceNumber) = 0;
    virtual int getSize() const = 0;
    virtual QList<VexaPlayListItem> getItems(int from, int to) = 0;
    virtual int removeItems(const QList<int>& indices) = 0;
    virtual bool moveItem(int from, int to) = 0;
    virtual bool moveItems(QList<int> indices, int to) = 0;
    virtual int addItems(VexaPlayListAddPosition::Enum position, const QList<VexaPlayListItem>& items) = 0;
    // Adds the entries of source at position, as addItems adds items, and
    // returns the same. With move the entries leave source, which is then to
    // be deleted: its watchers are not told of the entries that left.
    virtual int addItemsOf(VexaPlayListAddPosition::Enum position, PlayListBase* source, bool move) = 0;
    virtual bool clearItems() = 0;
    virtual bool remove() = 0;
    virtual VexaRoles itemToVexaRoles(const VexaPlayListItem& item) const = 0;

signals:
    void itemsAdded(const QString& positionEnum, int firstSeqNum, int count);
    void itemsRemoved(const QList<int>& indices, int lastSeqNumBeforeRemove);
    void itemMoved(int from, int to);
    void itemsCleared();
    void shuffleChanged(bool newValue);
    void repeatAllChanged(bool newValue);
    void nameChanged(const QString& name);

protected:
    PlayListBase();
};
