#pragma once

#include "VexaCommandRecord.h"

// Set a playlist's repeat mode: plid, mode (VexaPlayListPlRepeatMode).
class VEXA_API VexaPlayListPlSetRepeat : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::mode;
    using VexaCommandRecord::setMode;
};
