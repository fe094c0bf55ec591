#pragma once

#include "VexaCommandRecord.h"

// Create a playlist: name.
class VEXA_API VexaPlayListPlCreate : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::name;
    using VexaCommandRecord::setName;
};
