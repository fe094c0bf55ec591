#pragma once

#include "VexaCommandRecord.h"

// Rename a playlist: plid, name.
class VEXA_API VexaPlayListPlSetName : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::name;
    using VexaCommandRecord::setName;
};
