#pragma once

#include "CMPath.h"
#include "VexaValue.h"

#include <QStringList>

// A worker's change notifications, carried by the root to every subscriber.
class VEXA_API CMSubscribe
{
public:
    // The change that tells listeners to fetch their rows again.
    static QString RowsChangeReset() { return QStringLiteral("reset"); }

    // Notifies every rows listener at path or below it (after a '/' or a '?').
    void changedStartingWith(const CMPath& path, const QString& change, int from = -1, int to = -1);
    // Notifies listeners at path of inserted rows, each change being "+<row>".
    void rowsChanged(const CMPath& path, const QStringList& changes, int from = 0, int to = -1);
    // Notifies value listeners at path.
    void valueChanged(const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue);
};
