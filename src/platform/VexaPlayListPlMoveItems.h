#pragma once

#include "VexaCommandRecord.h"

// Move entries of a playlist: plid, items (positions), to.
class VEXA_API VexaPlayListPlMoveItems : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::to;
    using VexaCommandRecord::setTo;
    QList<int> items(bool* ok = nullptr) const { return intItems(ok); }
    void setItems(const QList<int>& items) { setIntItems(items); }
};
