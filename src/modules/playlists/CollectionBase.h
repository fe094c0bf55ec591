#pragma once

#include <QList>
#include <QObject>
#include <QString>

class PlayListBase;

// A named group of playlists as everyone outside the model sees it.
class CollectionBase : public QObject
{
    Q_OBJECT

public:
    ~CollectionBase() override;

    virtual int getUid() const = 0;
    virtual QString getName() const = 0;
    virtual bool valid() const = 0;
    virtual bool remove() = 0;
    virtual bool addPlayList(PlayListBase* playList) = 0;
    virtual bool removePlayList(PlayListBase* playList) = 0;
    virtual const QList<PlayListBase*>& getPlayLists() const = 0;

signals:
    void playlistAdded();
    void playlistRemoved();

protected:
    CollectionBase();
};
