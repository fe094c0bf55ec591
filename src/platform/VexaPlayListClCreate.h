#pragma once

#include "VexaCommandRecord.h"

// Create a collection: name.
class VEXA_API VexaPlayListClCreate : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::name;
    using VexaCommandRecord::setName;
};
