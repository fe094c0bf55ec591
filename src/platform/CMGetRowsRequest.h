#pragma once

#include "CMPath.h"
#include "CMReply.h"

#include <QMetaType>
#include <QStringList>
#include <QVariant>

// A request for rows fromRow..toRow (both included) of the list at a path,
// each row carrying the roles named. The reply's data is a VexaRowsRoles.
class VEXA_API CMGetRowsRequest
{
public:
    CMGetRowsRequest() = default;
    CMGetRowsRequest(const CMPath& path, int fromRow, int toRow, const QStringList& roleNames, int index,
                     const CMReply<QVariant>& reply = CMReply<QVariant>())
        : m_path(path), m_fromRow(fromRow), m_toRow(toRow), m_roleNames(roleNames), m_index(index), m_reply(reply)
    {
    }

    const CMPath& path() const { return m_path; }
    int fromRow() const { return m_fromRow; }
    int toRow() const { return m_toRow; }
    const QStringList& roleNames() const { return m_roleNames; }
    // A number that tells requests apart in logs.
    int index() const { return m_index; }
    const CMReply<QVariant>& reply() const { return m_reply; }

private:
    CMPath m_path;
    int m_fromRow = 0;
    int m_toRow = -1;
    QStringList m_roleNames;
    int m_index = 0;
    CMReply<QVariant> m_reply;
};

Q_DECLARE_METATYPE(CMGetRowsRequest)
