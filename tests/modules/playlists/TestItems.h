#pragma once

#include "VexaPlayListItem.h"

#include <QList>
#include <QString>

// Items for the tests: titles "<prefix>0", "<prefix>1", ... so that the order
// of entries can be read back from the titles alone.
class TestItems
{
public:
    static VexaPlayListItem item(const QString& title);
    static QList<VexaPlayListItem> make(int count, const QString& prefix);
};
