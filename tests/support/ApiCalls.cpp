#include "ApiCalls.h"

#include <QDeadlineTimer>
#include <QList>
#include <QThread>

#include <gtest/gtest.h>

namespace {

QVariantList topicList(const ApiCalls::Topics& topics)
{
    QVariantList list;
    for (const auto& topic : topics)
        list.append(QVariantHash{{QStringLiteral("kind"), topic.first}, {QStringLiteral("path"), topic.second}});
    return list;
}

} // namespace

HttpReply ApiCalls::read(const char* call, const QString& path, const QString& roles, int from, int to) const
{
    QList<QPair<QString, QString>> arguments{{QStringLiteral("path"), path}};
    if (!roles.isNull())
        arguments.append({QStringLiteral("roles"), roles});
    if (from != NoRow)
        arguments.append({QStringLiteral("from"), QString::number(from)});
    if (to != NoRow)
        arguments.append({QStringLiteral("to"), QString::number(to)});
    return m_client.get(QStringLiteral("/api/v1/%1?").arg(QLatin1String(call)) + HttpClient::query(arguments));
}

HttpReply ApiCalls::setData(const QString& path, const QVariant& value) const
{
    return m_client.post(QStringLiteral("/api/v1/data"),
                         HttpClient::json(QVariantHash{{QStringLiteral("path"), path}, {QStringLiteral("value"), value}}));
}

QVariantHash ApiCalls::playerStatus() const
{
    return data(QStringLiteral("player:/status"), QStringLiteral("value")).json().toHash().value(QStringLiteral("value")).toHash();
}

bool ApiCalls::waitForPlayer(const std::function<bool(const QVariantHash&)>& done) const
{
    for (QDeadlineTimer deadline(10000); !deadline.hasExpired(); QThread::msleep(5)) {
        if (done(playerStatus()))
            return true;
    }
    return false;
}

QList<QVariantHash> ApiCalls::valuesUntil(const QString& id, const std::function<bool(const QList<QVariantHash>&)>& done,
                                          int timeoutMs) const
{
    QList<QVariantHash> seen;
    for (QDeadlineTimer deadline(timeoutMs); !deadline.hasExpired();) {
        for (const QVariant& event : poll(id, 1).json().toList()) {
            seen.append(event.toHash().value(QStringLiteral("value")).toHash());
            if (done(seen))
                return seen;
        }
    }
    ADD_FAILURE() << "the awaited value did not come";
    return seen;
}

HttpReply ApiCalls::createSubscription(const Topics& topics) const
{
    return m_client.post(QStringLiteral("/api/v1/subscriptions"),
                         HttpClient::json(QVariantHash{{QStringLiteral("subscribe"), topicList(topics)}}));
}

QString ApiCalls::subscribe(const Topics& topics) const
{
    const HttpReply reply = createSubscription(topics);
    return reply.status == 201 ? reply.json().toHash().value(QStringLiteral("id")).toString() : QString();
}

HttpReply ApiCalls::modify(const QString& id, const Topics& subscribe, const Topics& unsubscribe) const
{
    return m_client.request("PATCH", QStringLiteral("/api/v1/subscriptions/") + id,
                            HttpClient::json(QVariantHash{{QStringLiteral("subscribe"), topicList(subscribe)},
                                                          {QStringLiteral("unsubscribe"), topicList(unsubscribe)}}));
}

QString ApiCalls::pollTarget(const QString& id, int timeoutSeconds)
{
    return QStringLiteral("/api/v1/events?")
        + HttpClient::query({{QStringLiteral("subscription"), id}, {QStringLiteral("timeout"), QString::number(timeoutSeconds)}});
}

QString ApiCalls::streamTarget(const QString& id)
{
    return QStringLiteral("/api/v1/events/stream?") + HttpClient::query({{QStringLiteral("subscription"), id}});
}
