#pragma once

#include "VexaCommandRecord.h"

// A command on one playlist: plid.
class VEXA_API VexaPlayListPlId : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
};
