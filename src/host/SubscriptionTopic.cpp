#include "SubscriptionTopic.h"

#include "ApiInput.h"

SubscriptionTopic::SubscriptionTopic(Kind kind, const QString& path) : m_kind(kind), m_path(CMPath(path).toEncoded()) {}

bool SubscriptionTopic::fromVariant(const QVariant& value, SubscriptionTopic* topic, QString* error)
{
    if (value.userType() != QMetaType::QVariantHash) {
        *error = QStringLiteral("a subscription entry must be an object {\"path\", \"kind\"}");
        return false;
    }
    const QVariantHash entry = value.toHash();
    CMPath path;
    if (!ApiInput::readPath(entry.value(QStringLiteral("path")), &path, error))
        return false;
    const QVariant kind = entry.value(QStringLiteral("kind"));
    if (kind == QStringLiteral("rows")) {
        *topic = SubscriptionTopic(Kind::Rows, path.toEncoded());
    } else if (kind == QStringLiteral("value")) {
        *topic = SubscriptionTopic(Kind::Value, path.toEncoded());
    } else {
        *error = QStringLiteral("kind must be \"rows\" or \"value\"");
        return false;
    }
    return true;
}

bool SubscriptionTopic::listFromVariant(const QVariant& value, QList<SubscriptionTopic>* topics, QString* error)
{
    if (!value.isValid() || value.userType() == QMetaType::Nullptr)
        return true;
    if (value.userType() != QMetaType::QVariantList) {
        *error = QStringLiteral("subscribe and unsubscribe must be lists");
        return false;
    }
    for (const QVariant& item : value.toList()) {
        SubscriptionTopic topic;
        if (!fromVariant(item, &topic, error))
            return false;
        topics->append(topic);
    }
    return true;
}
