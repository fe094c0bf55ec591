#pragma once

#include <QList>
#include <QObject>
#include <QString>

class BaseNode;
class CMSubscribe;
class PlayListBase;

// Tells subscribers of one playlist's lists and menus when the playlist
// changed, so that clients fetch them again. It holds the playlist's uid, not
// the playlist: it may outlive the object by a turn of the event loop.
class PlayListWatcher : public QObject
{
    Q_OBJECT

public:
    PlayListWatcher(QObject* parent, CMSubscribe* subscribe, PlayListBase* playlist, BaseNode* itemsNode);

    int uid() const { return m_uid; }
    BaseNode* itemsNode() const { return m_itemsNode; }

public slots:
    void on_items_added(QString position, int firstSeqNum, int count);
    void on_items_removed(QList<int> indices, int lastSeqNumBeforeRemove);
    void on_items_moved(int from, int to);
    void on_items_cleared();
    void on_playlist_changed(bool value);
    void on_playlistName_changed(QString name);

private:
    void restartPlayListView(int uid);

    CMSubscribe* m_subscribe;
    int m_uid;
    BaseNode* m_itemsNode;
};
