#pragma once

#include "CMPath.h"
#include "VexaHash.h"
#include "VexaPlayListItem.h"

#include <QList>

// The fields that the playlist commands carry: name, plid, clid, fromPlid,
// mode, items and to. Each command's record (VexaPlayListPlSetName and the
// others) makes public only the fields it has. Numbers arrive as JSON numbers
// or as decimal text and read alike; a missing or unreadable id reads as -1.
class VEXA_API VexaCommandRecord : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Name() { return QStringLiteral("name"); }
    static QString Plid() { return QStringLiteral("plid"); }
    static QString Clid() { return QStringLiteral("clid"); }
    static QString FromPlid() { return QStringLiteral("fromPlid"); }
    static QString Mode() { return QStringLiteral("mode"); }
    static QString Items() { return QStringLiteral("items"); }
    static QString To() { return QStringLiteral("to"); }

protected:
    // A name is text: a number or a flag in its place reads as no name at
    // all, so that it is refused like a missing one instead of turning into
    // a name such as "5" or "true".
    QString name() const { return value(Name()).type() == QVariant::String ? stringValue(Name()) : QString(); }
    void setName(const QString& v) { insert(Name(), v); }
    int plid() const { return intValue(Plid(), -1); }
    void setPlid(int v) { insert(Plid(), v); }
    int clid() const { return intValue(Clid(), -1); }
    void setClid(int v) { insert(Clid(), v); }
    int fromPlid() const { return intValue(FromPlid(), -1); }
    void setFromPlid(int v) { insert(FromPlid(), v); }
    int to() const { return intValue(To(), -1); }
    void setTo(int v) { insert(To(), v); }
    // The raw mode: each command reads it with its own enumeration.
    QVariant mode() const { return value(Mode()); }
    void setMode(const QVariant& v) { insert(Mode(), v); }

    // Items in their three forms. An item that does not read as its form
    // makes the whole list unreadable: *ok turns false.
    QList<int> intItems(bool* ok = nullptr) const;
    void setIntItems(const QList<int>& items);
    QList<CMPath> pathItems(bool* ok = nullptr) const;
    void setPathItems(const QList<CMPath>& items);
    QList<VexaPlayListItem> playListItems(bool* ok = nullptr) const;
    void setPlayListItems(const QList<VexaPlayListItem>& items);
};
