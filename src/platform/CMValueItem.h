#pragma once

#include "CMPath.h"
#include "VexaValue.h"

#include <QObject>

// Watches one value path: on every change it calls the receiver's slot with
// (new value, old value), on the receiver's terms (connection type).
class VEXA_API CMValueItem : public QObject
{
    Q_OBJECT
public:
    CMValueItem(QObject* parent, const CMPath& path, QObject* receiver, const char* slot,
                Qt::ConnectionType type = Qt::AutoConnection);

    const CMPath& path() const { return m_path; }

signals:
    void changed(VexaValue newValue, VexaValue oldValue);

private slots:
    void on_root_valueChanged(const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue);

private:
    CMPath m_path;
};
