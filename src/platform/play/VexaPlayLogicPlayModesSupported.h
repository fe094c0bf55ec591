#pragma once

#include "VexaHash.h"

// The play modes a play logic lets the player offer.
class VEXA_API VexaPlayLogicPlayModesSupported : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Shuffle() { return QStringLiteral("shuffle"); }
    static QString RepeatAll() { return QStringLiteral("repeatAll"); }
    static QString RepeatOne() { return QStringLiteral("repeatOne"); }
    static QString ShuffleRepeatAll() { return QStringLiteral("shuffleRepeatAll"); }
    static QString ShuffleRepeatOne() { return QStringLiteral("shuffleRepeatOne"); }

    bool shuffle() const { return boolValue(Shuffle()); }
    void setShuffle(bool v) { insert(Shuffle(), v); }
    bool repeatAll() const { return boolValue(RepeatAll()); }
    void setRepeatAll(bool v) { insert(RepeatAll(), v); }
    bool repeatOne() const { return boolValue(RepeatOne()); }
    void setRepeatOne(bool v) { insert(RepeatOne(), v); }
    bool shuffleRepeatAll() const { return boolValue(ShuffleRepeatAll()); }
    void setShuffleRepeatAll(bool v) { insert(ShuffleRepeatAll(), v); }
    bool shuffleRepeatOne() const { return boolValue(ShuffleRepeatOne()); }
    void setShuffleRepeatOne(bool v) { insert(ShuffleRepeatOne(), v); }
};
