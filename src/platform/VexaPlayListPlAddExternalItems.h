#pragma once

#include "VexaCommandRecord.h"

// Add complete item records: plid, mode (VexaPlayListAddPosition), items.
class VEXA_API VexaPlayListPlAddExternalItems : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::mode;
    using VexaCommandRecord::setMode;
    QList<VexaPlayListItem> items(bool* ok = nullptr) const { return playListItems(ok); }
    void setItems(const QList<VexaPlayListItem>& items) { setPlayListItems(items); }
};
