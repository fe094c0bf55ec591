#include "TestItems.h"

VexaPlayListItem TestItems::item(const QString& title)
{
    VexaPlayListItem item;
    item.setTitle(title);
    item.setArtist(QStringLiteral("artist of ") + title);
    item.setAlbum(QStringLiteral("album"));
    item.setArtworkUrl(QStringLiteral("http://art/") + title);
    item.setGenre(QStringLiteral("genre"));
    item.setDurationSeconds(title.size() * 10);
    item.setUrl(QStringLiteral("file:///music/") + title);
    item.setServiceId(QStringLiteral("library"));
    item.setVexaRoles(QStringLiteral("{\"title\":\"") + title + QStringLiteral("\"}"));
    return item;
}

QList<VexaPlayListItem> TestItems::make(int count, const QString& prefix)
{
    QList<VexaPlayListItem> items;
    for (int i = 0; i < count; ++i)
        items.append(item(prefix + QString::number(i)));
    return items;
}
