#pragma once

#include "VexaCommandRecord.h"

// Set a playlist's shuffle mode: plid, mode (VexaPlayListPlShuffleMode).
class VEXA_API VexaPlayListPlSetShuffle : public VexaCommandRecord
{
public:
    using VexaCommandRecord::VexaCommandRecord;
    using VexaCommandRecord::plid;
    using VexaCommandRecord::setPlid;
    using VexaCommandRecord::mode;
    using VexaCommandRecord::setMode;
};
