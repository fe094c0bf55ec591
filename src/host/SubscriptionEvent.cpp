#include "SubscriptionEvent.h"

#include <VexaJson.h>

namespace {

const QString kPath = QStringLiteral("path");
const QString kKind = QStringLiteral("kind");
const QString kRows = QStringLiteral("rows");
const QString kChange = QStringLiteral("change");

} // namespace

QByteArray SubscriptionEvent::value(const QString& path, const QVariant& value)
{
    return VexaJson::toJson(QVariantHash{{kPath, path}, {kKind, QStringLiteral("value")}, {QStringLiteral("value"), value}});
}

QByteArray SubscriptionEvent::rowsInserted(const QString& path, const QList<int>& rows)
{
    QVariantList rowList;
    rowList.reserve(rows.size());
    for (int row : rows)
        rowList.append(row);
    return VexaJson::toJson(
        QVariantHash{{kPath, path}, {kKind, kRows}, {kChange, QStringLiteral("insert")}, {kRows, rowList}});
}

QByteArray SubscriptionEvent::rowsReset(const QString& path)
{
    return VexaJson::toJson(QVariantHash{{kPath, path}, {kKind, kRows}, {kChange, QStringLiteral("reset")}});
}

QByteArray SubscriptionEvent::overflow(qint64 dropped)
{
    return VexaJson::toJson(QVariantHash{{kKind, QStringLiteral("overflow")}, {QStringLiteral("dropped"), dropped}});
}

QByteArray SubscriptionEvent::list(const QList<QByteArray>& events)
{
    int size = 2 + events.size();
    for (const QByteArray& event : events)
        size += event.size();
    QByteArray text;
    text.reserve(size);
    text += '[';
    for (int i = 0; i < events.size(); ++i) {
        if (i)
            text += ',';
        text += events.at(i);
    }
    text += ']';
    return text;
}
