#pragma once

#include "CMPath.h"
#include "VexaPlayLogicData.h"
#include "VexaPlayerPlayMode.h"

// The state a play logic publishes to the player: its data (what plays, the
// controls) and its play mode. Used on the play logic's thread only.
class VEXA_API PlayLogicBase
{
public:
    explicit PlayLogicBase(const CMPath& playLogicPath);
    virtual ~PlayLogicBase() = default;

    const CMPath& playLogicPath() const { return m_playLogicPath; }

    VexaPlayLogicData data() const { return m_data; }
    // Stores and publishes the data.
    void setData(const VexaPlayLogicData& data);
    VexaPlayerPlayMode::Enum playMode() const { return m_playMode; }
    // Stores and publishes the play mode.
    void setPlayMode(VexaPlayerPlayMode::Enum mode);
    // Milliseconds the current media has played, from the player's clock.
    qint64 playTime() const;

protected:
    // Stores the data without publishing it, for a change that a later
    // publication carries to the player anyway.
    void storeData(const VexaPlayLogicData& data) { m_data = data; }

private:
    CMPath m_playLogicPath;
    VexaPlayLogicData m_data;
    VexaPlayerPlayMode::Enum m_playMode = VexaPlayerPlayMode::Normal;
};
