#include "SubscriptionTopicSet.h"

void SubscriptionTopicSet::add(const SubscriptionTopic& topic)
{
    if (topic.kind() == SubscriptionTopic::Kind::Value)
        m_values.insert(topic.path());
    else
        m_rows.insert(topic.path());
}

void SubscriptionTopicSet::remove(const SubscriptionTopic& topic)
{
    if (topic.kind() == SubscriptionTopic::Kind::Value)
        m_values.remove(topic.path());
    else
        m_rows.erase(topic.path());
}

QStringList SubscriptionTopicSet::rowsReachedBy(const QString& resetPath) const
{
    QStringList reached;
    // The topics starting with a prefix are one range of the ordered set, so
    // a reset visits only what it reaches, never siblings such as /tracks/12
    // of /tracks/1.
    const auto collect = [&](const QString& prefix) {
        for (auto it = m_rows.lower_bound(prefix); it != m_rows.end() && it->startsWith(prefix); ++it)
            reached.append(*it);
    };
    if (resetPath.endsWith(QLatin1Char('/'))) {
        collect(resetPath);
        return reached;
    }
    if (hasRows(resetPath))
        reached.append(resetPath);
    collect(resetPath + QLatin1Char('/'));
    collect(resetPath + QLatin1Char('?'));
    return reached;
}
