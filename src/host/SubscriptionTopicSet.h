#pragma once

#include "SubscriptionTopic.h"

#include <QSet>
#include <QStringList>

#include <set>

// The topics of one subscription, indexed so that matching a change costs
// the same however many topics there are: value and insert events look their
// path up, a reset visits only the rows topics that begin with its path.
class SubscriptionTopicSet
{
public:
    void add(const SubscriptionTopic& topic);
    void remove(const SubscriptionTopic& topic);
    int size() const { return m_values.size() + int(m_rows.size()); }

    bool hasValue(const QString& path) const { return m_values.contains(path); }
    bool hasRows(const QString& path) const { return m_rows.count(path) > 0; }
    // The rows topics a reset of resetPath reaches: the same path, or one
    // continuing it after a '/' or a '?'.
    QStringList rowsReachedBy(const QString& resetPath) const;

private:
    QSet<QString> m_values;
    // Ordered, so that the topics a reset may reach are one range.
    std::set<QString> m_rows;
};
