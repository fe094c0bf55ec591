#pragma once

#include "VexaCommandRecord.h"

// Remove entries of a playlist: plid, items (positions).
class VEXA_API VexaPlayListPlRemoveItems : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    QList<int> items(bool* ok = nullptr) const { return intItems(ok); }
    void setItems(const QList<int>& items) { setIntItems(items); }
};
