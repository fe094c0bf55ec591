#pragma once

#include "HttpClient.h"

#include <functional>
#include <limits>

// The host API's calls as a test makes them, with paths encoded properly.
class ApiCalls
{
public:
    // (kind, path) pairs for subscriptions: kind "rows" or "value".
    using Topics = QList<QPair<QString, QString>>;

    // A row bound that the request leaves out.
    static constexpr int NoRow = std::numeric_limits<int>::min();

    explicit ApiCalls(const HttpClient& client) : m_client(client) {}

    HttpReply rows(const QString& path, const QString& roles = QString(), int from = NoRow, int to = NoRow) const
    {
        return read("rows", path, roles, from, to);
    }
    HttpReply data(const QString& path, const QString& roles = QString()) const { return read("data", path, roles); }
    HttpReply setData(const QString& path, const QVariant& value) const;
    // The value of player:/status.
    QVariantHash playerStatus() const;
    // Reads the player's status until done holds for it (true) or ten seconds
    // passed (false): the player starts and stops asynchronously.
    bool waitForPlayer(const std::function<bool(const QVariantHash&)>& done) const;
    // The values subscription id reports until done holds for them; a test
    // failure when that takes longer than timeoutMs.
    QList<QVariantHash> valuesUntil(const QString& id, const std::function<bool(const QList<QVariantHash>&)>& done,
                                    int timeoutMs = 20000) const;
    // A new subscription's id; empty when it was not created.
    QString subscribe(const Topics& topics) const;
    // The answer to creating a subscription, for tests of its refusals.
    HttpReply createSubscription(const Topics& topics) const;
    HttpReply modify(const QString& id, const Topics& subscribe, const Topics& unsubscribe) const;
    HttpReply poll(const QString& id, int timeoutSeconds) const
    {
        return m_client.get(pollTarget(id, timeoutSeconds), (timeoutSeconds + 15) * 1000);
    }
    static QString pollTarget(const QString& id, int timeoutSeconds);
    static QString streamTarget(const QString& id);

    // {"type": "i32_", "i32_": v}
    static QVariantHash i32(int v) { return {{QStringLiteral("type"), QStringLiteral("i32_")}, {QStringLiteral("i32_"), v}}; }

private:
    HttpReply read(const char* call, const QString& path, const QString& roles, int from = NoRow, int to = NoRow) const;

    HttpClient m_client;
};
