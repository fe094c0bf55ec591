#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

// One row of table collections with the uids of its member playlists, in the
// order the store returns them.
struct CollectionRecord
{
    int uid = -1;
    QString name;
    QList<int> playlists;
};

Q_DECLARE_METATYPE(CollectionRecord)
