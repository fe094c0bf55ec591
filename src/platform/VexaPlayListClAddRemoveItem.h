#pragma once

#include "VexaCommandRecord.h"

// Add a playlist to a collection or remove it: clid, plid.
class VEXA_API VexaPlayListClAddRemoveItem : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::clid;
    using VexaCommandRecord::setClid;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
};
