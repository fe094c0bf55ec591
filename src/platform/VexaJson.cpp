#include "VexaJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <cmath>
#include <limits>

namespace {

QVariant fromJson(const QJsonValue& v)
{
    switch (v.type()) {
    case QJsonValue::Object: {
        const QJsonObject o = v.toObject();
        QVariantHash h;
        h.reserve(o.size());
        for (auto it = o.begin(); it != o.end(); ++it)
            h.insert(it.key(), fromJson(it.value()));
        return h;
    }
    case QJsonValue::Array: {
        const QJsonArray a = v.toArray();
        QVariantList l;
        l.reserve(a.size());
        for (const QJsonValue& e : a)
            l.append(fromJson(e));
        return l;
    }
    case QJsonValue::Double: {
        const double d = v.toDouble();
        if (std::trunc(d) == d && d >= std::numeric_limits<int>::min() && d <= std::numeric_limits<int>::max())
            return int(d);
        return d;
    }
    case QJsonValue::String:
        return v.toString();
    case QJsonValue::Bool:
        return v.toBool();
    default:
        return QVariant();
    }
}

} // namespace

QVariant VexaJson::parse(const QByteArray& text, QString* error)
{
    QJsonParseError parseError;
    // Wrapping lets scalars parse too: QJsonDocument takes only objects and arrays.
    const QJsonDocument doc = QJsonDocument::fromJson("[" + text + "]", &parseError);
    if (parseError.error != QJsonParseError::NoError || !doc.isArray() || doc.array().size() != 1) {
        if (error)
            *error = parseError.error != QJsonParseError::NoError ? parseError.errorString()
                                                                  : QStringLiteral("expected one JSON value");
        return QVariant();
    }
    if (error)
        error->clear();
    const QJsonValue value = doc.array().at(0);
    // JSON null parses to a null QVariant of a valid type, unlike a failure.
    return value.isNull() ? QVariant::fromValue(nullptr) : fromJson(value);
}

QByteArray VexaJson::toJson(const QVariant& value)
{
    const QJsonDocument doc(QJsonArray{QJsonValue::fromVariant(value)});
    QByteArray text = doc.toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}
