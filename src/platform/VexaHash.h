#pragma once

#include "VexaGlobal.h"

#include <QHash>
#include <QString>
#include <QVariant>

// A hash of named fields with typed accessors in the subclasses. Every value
// type of the platform is one: its keys are the names of its accessors, so the
// hash itself is the JSON form, and keys a subclass does not know are kept and
// passed on unchanged.
class VEXA_API VexaHash
{
public:
    VexaHash() = default;
    VexaHash(const QVariantHash& hash) : m_hash(hash) {}
    virtual ~VexaHash() = default;

    bool contains(const QString& key) const { return m_hash.contains(key); }
    QVariant value(const QString& key) const { return m_hash.value(key); }
    void insert(const QString& key, const QVariant& value) { m_hash.insert(key, value); }
    void remove(const QString& key) { m_hash.remove(key); }
    bool isEmpty() const { return m_hash.isEmpty(); }
    QStringList keys() const { return m_hash.keys(); }

    const QVariantHash& hash() const { return m_hash; }
    QVariant toVariant() const { return m_hash; }

    bool operator==(const VexaHash& other) const { return m_hash == other.m_hash; }
    bool operator!=(const VexaHash& other) const { return m_hash != other.m_hash; }

protected:
    // Typed reads that accept what JSON delivers: numbers as doubles or as
    // decimal text. A value that is missing or does not read as an int gives
    // fallback.
    int intValue(const QString& key, int fallback) const;
    QString stringValue(const QString& key) const { return m_hash.value(key).toString(); }
    bool boolValue(const QString& key) const;
    QVariantHash hashValue(const QString& key) const { return m_hash.value(key).toHash(); }

private:
    QVariantHash m_hash;
};

VEXA_API QDebug operator<<(QDebug debug, const VexaHash& hash);
