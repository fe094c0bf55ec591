#pragma once

#include "VexaCommandRecord.h"

// Add content by path: plid, fromPlid, mode (VexaPlayListAddPosition), items (content paths).
class VEXA_API VexaPlayListPlAddItems : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::fromPlid;
    using VexaCommandRecord::setFromPlid;
    using VexaCommandRecord::mode;
    using VexaCommandRecord::setMode;
    QList<CMPath> items(bool* ok = nullptr) const { return pathItems(ok); }
    void setItems(const QList<CMPath>& items) { setPathItems(items); }
};
