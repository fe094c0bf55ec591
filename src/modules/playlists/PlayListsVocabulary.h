#pragma once

#include "CMPath.h"
#include "VexaMediaData.h"

#include <QString>

// The words the browse tree and the commands share.

// Parameter names of the paths of menus and choosers; the paths are a
// client's whole state, so each name must be read back exactly as written.
namespace Param {
inline const QString Action = QStringLiteral("action");
inline const QString Plid = QStringLiteral("plid");
inline const QString Clid = QStringLiteral("clid");
inline const QString ItemId = QStringLiteral("itemid");
inline const QString SeqNum = QStringLiteral("seqnum");
inline const QString FromPlid = QStringLiteral("fromplid");
inline const QString From = QStringLiteral("from");
inline const QString Mode = QStringLiteral("mode");
} // namespace Param

// The path of a playlist's tracks: the play queue (uid 0) has its own.
CMPath itemsPathOf(int uid);

// Media data that routes playback of a list through this module's play logic.
VexaMediaData playLogicMediaData();
