#pragma once

#include "CMReply.h"

#include <QVariant>

// The reply of a set-data request: it may carry a value, but often completes
// with none.
class CMVoidReply : public CMReply<QVariant>
{
public:
    CMVoidReply() = default;
    CMVoidReply(const CMReply<QVariant>& reply) : CMReply<QVariant>(reply) {}

    // Completes the reply with an empty value.
    bool setFinished() const { return setData(QVariant()); }
};
