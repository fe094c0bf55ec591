#pragma once

#include <QString>
#include <QVariant>

// One thing a subscription listens to: the rows of a list or a value, at a
// path kept in its normalised encoded text form so that equal paths compare
// equal however the client spelled them.
class SubscriptionTopic
{
public:
    enum class Kind { Rows, Value };

    SubscriptionTopic() = default;
    SubscriptionTopic(Kind kind, const QString& path);

    // Reads {"path": P, "kind": "rows" | "value"}.
    static bool fromVariant(const QVariant& value, SubscriptionTopic* topic, QString* error);
    // Reads a list of them.
    static bool listFromVariant(const QVariant& value, QList<SubscriptionTopic>* topics, QString* error);

    Kind kind() const { return m_kind; }
    const QString& path() const { return m_path; }

    bool operator==(const SubscriptionTopic& other) const { return m_kind == other.m_kind && m_path == other.m_path; }

private:
    Kind m_kind = Kind::Rows;
    QString m_path;
};
