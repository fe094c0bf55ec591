#pragma once

#include "HttpClient.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

// The host API's calls as a test makes them, with paths encoded properly.
class ApiCalls
{
public:
    // (kind, path) pairs for subscriptions: kind "rows" or "value".
    using Topics = QList<QPair<QString, QString>>;

    explicit ApiCalls(const HttpClient& client) : m_client(client) {}

    HttpReply rows(const QString& path, const QString& roles = QString(), int from = -1, int to = -1) const;
    HttpReply data(const QString& path, const QString& roles = QString()) const;
    HttpReply setData(const QString& path, const QVariant& value) const;
    // A new subscription's id; empty when it was not created.
    QString subscribe(const Topics& topics) const;
    HttpReply modify(const QString& id, const Topics& subscribe, const Topics& unsubscribe) const;
    HttpReply poll(const QString& id, int timeoutSeconds) const;
    QString pollTarget(const QString& id, int timeoutSeconds) const;
    QString streamTarget(const QString& id) const;

    // {"type": "i32_", "i32_": v}
    static QVariantHash i32(int v);
    static QVariantList topicList(const Topics& topics);

    const HttpClient& client() const { return m_client; }

private:
    HttpClient m_client;
};
