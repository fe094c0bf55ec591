#pragma once

#include "VexaCommandRecord.h"

// A command on one collection: clid.
class VEXA_API VexaPlayListClId : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::clid;
    using VexaCommandRecord::setClid;
};
