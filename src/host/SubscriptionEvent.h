#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

// The JSON text of the events a subscription hands its client. Events are
// kept as text: one change reaching many subscriptions is one shared buffer,
// and a queue's size is counted in the bytes the client will read.
class SubscriptionEvent
{
public:
    // {"path": P, "kind": "value", "value": V}
    static QByteArray value(const QString& path, const QVariant& value);
    // {"path": P, "kind": "rows", "change": "insert", "rows": [...]}
    static QByteArray rowsInserted(const QString& path, const QList<int>& rows);
    // {"path": P, "kind": "rows", "change": "reset"}
    static QByteArray rowsReset(const QString& path);
    // {"kind": "overflow", "dropped": N}: N events were dropped before it;
    // the client refetches everything the subscription watches.
    static QByteArray overflow(qint64 dropped);

    // A JSON array of events, oldest first.
    static QByteArray list(const QList<QByteArray>& events);
};
