#pragma once

#include <QMetaType>
#include <QString>

// One row of table playlists together with the playlist's size. A plain value,
// copied freely between the store and the model.
struct PlayListRecord
{
    // Playlist id; 0 is the play queue, -1 a record that was not found.
    int uid = -1;
    QString name;
    bool shuffle = false;
    bool repeatAll = false;
    // Sequence number of the entry played last; -1 when none.
    int lastPlayedIndex = -1;
    // Number of entries: the largest sequence number plus one.
    int size = 0;
};

Q_DECLARE_METATYPE(PlayListRecord)
