#include "PlayLogicBase.h"

#include "PlayLogicInterface.h"

PlayLogicBase::PlayLogicBase(const CMPath& playLogicPath) : m_playLogicPath(playLogicPath)
{
}

void PlayLogicBase::setData(const VexaPlayLogicData& data)
{
    m_data = data;
    PlayLogicInterface::playerInstance()->publishData(m_playLogicPath, m_data);
}

void PlayLogicBase::setPlayMode(VexaPlayerPlayMode::Enum mode)
{
    m_playMode = mode;
    PlayLogicInterface::playerInstance()->publishPlayMode(m_playLogicPath, mode);
}

qint64 PlayLogicBase::playTime() const
{
    return PlayLogicInterface::playerInstance()->positionMs();
}
