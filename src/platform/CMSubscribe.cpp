#include "CMSubscribe.h"

#include "CMRootWorker.h"

void CMSubscribe::changedStartingWith(const CMPath& path, const QString& change, int, int)
{
    if (change == RowsChangeReset())
        emit CMRoot()->rowsReset(path);
}

void CMSubscribe::rowsChanged(const CMPath& path, const QStringList& changes, int, int)
{
    QList<int> inserted;
    inserted.reserve(changes.size());
    for (const QString& change : changes) {
        bool ok = false;
        const int row = change.mid(1).toInt(&ok);
        if (change.startsWith(QLatin1Char('+')) && ok)
            inserted.append(row);
    }
    emit CMRoot()->rowsInserted(path, inserted);
}

void CMSubscribe::valueChanged(const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue)
{
    emit CMRoot()->valueChanged(path, newValue, oldValue);
}
