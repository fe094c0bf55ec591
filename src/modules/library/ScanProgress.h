#pragma once

#include <QString>
#include <QVariantHash>

// Where a scan stands, as library:/scan shows it.
struct ScanProgress
{
    bool scanning = false;
    int done = 0;
    int total = 0;
    int tracks = 0;
    int skipped = 0;
    // Why the last scan could not run; empty when it could.
    QString error;

    // {"state": "idle" | "scanning", "done", "total", "tracks", "skipped"[, "error"]}
    QVariantHash toValue() const
    {
        QVariantHash value{{QStringLiteral("state"), scanning ? QStringLiteral("scanning") : QStringLiteral("idle")},
                           {QStringLiteral("done"), done},
                           {QStringLiteral("total"), total},
                           {QStringLiteral("tracks"), tracks},
                           {QStringLiteral("skipped"), skipped}};
        if (!error.isEmpty())
            value.insert(QStringLiteral("error"), error);
        return value;
    }
};
