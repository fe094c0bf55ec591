#pragma once

#include "VexaHash.h"

// The power manager's target state, {"target": N}.
class VEXA_API VexaPowerManagerTarget : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Target() { return QStringLiteral("target"); }

    int target() const { return intValue(Target(), -1); }
    void setTarget(int target) { insert(Target(), target); }
};
