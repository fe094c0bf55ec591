#pragma once

#include "CMPath.h"
#include "CMVoidReply.h"

#include <QMetaType>
#include <QVariant>

// A request to set data at a path (carry out a command, change a value). It is
// answered once through its reply, which every copy of the request shares.
class VEXA_API CMSetDataRequest
{
public:
    CMSetDataRequest() = default;
    CMSetDataRequest(const CMPath& path, const QVariant& value, const CMVoidReply& reply = CMVoidReply())
        : m_path(path), m_value(value), m_reply(reply)
    {
    }

    const CMPath& path() const { return m_path; }
    const QVariant& value() const { return m_value; }
    const CMVoidReply& reply() const { return m_reply; }

private:
    CMPath m_path;
    QVariant m_value;
    CMVoidReply m_reply;
};

Q_DECLARE_METATYPE(CMSetDataRequest)
