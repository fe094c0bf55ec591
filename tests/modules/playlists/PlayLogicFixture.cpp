#include "PlayLogicFixture.h"

#include "TestSupport.h"

#include <VexaPaths.h>
#include <VexaPlayLogicChangePlayModeArgs.h>
#include <VexaPlayLogicRequest.h>

PlayLogicFixture::PlayLogicFixture()
{
    PlayLogicInterface::setPlayerInstance(&m_player);
}

PlayLogicFixture::~PlayLogicFixture()
{
    PlayLogicInterface::setPlayerInstance(nullptr);
}

PlayListBase* PlayLogicFixture::list(int size, bool shuffle, bool repeatAll, int lastPlayed)
{
    PlayListBase* pl = m_manager.createPlayList(QStringLiteral("p%1").arg(m_manager.getAllPlayList().size()));
    if (size > 0)
        pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(size, "t"));
    pl->setShuffle(shuffle);
    pl->setRepeatAll(repeatAll);
    pl->setLastSequenceNumber(lastPlayed);
    return pl;
}

CMVoidReply PlayLogicFixture::start(PlayListBase* pl, int index)
{
    VexaRoles container;
    container.setType(VexaRolesType::Container);
    container.setPath(pl->getUid() == 0 ? VexaPlayListPqGetItemsPath()
                                         : VexaPlayListPlGetItemsPath().appended(QString::number(pl->getUid())));
    return play(container, index);
}

CMVoidReply PlayLogicFixture::play(const VexaRoles& container, int index, int type, const VexaRoles& track)
{
    VexaPlayLogicPlayArgs args;
    args.setMediaRoles(container);
    args.setTrackRoles(track);
    args.setIndex(index);
    args.setType(type);
    const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), args.toVariant());
    m_logic.playInternal(request, args);
    return request.reply();
}

void PlayLogicFixture::started(const VexaRoles& track)
{
    VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::MediaPlaybackStarted);
    request.setNewRoles(track);
    m_logic.setDataRequest(CMSetDataRequest(VexaPlayListsPlayLogicPath(), request.toVariant()));
}

void PlayLogicFixture::failed(int code)
{
    VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::TryResumePlayback);
    VexaError error;
    error.setCode(code);
    request.setStreamerError(error);
    m_logic.setDataRequest(CMSetDataRequest(VexaPlayListsPlayLogicPath(), request.toVariant()));
}

CMVoidReply PlayLogicFixture::changeMode(VexaPlayerPlayMode::Enum mode)
{
    VexaPlayLogicChangePlayModeArgs args;
    args.setPlayMode(mode);
    const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), args.toVariant());
    m_logic.changePlayModeInternal(request);
    return request.reply();
}

QList<int> PlayLogicFixture::sent(const QString& op) const
{
    QList<int> numbers;
    for (const FakePlayer::Call& call : m_player.callsOf(op))
        numbers.append(seqOf(call.roles));
    return numbers;
}

int PlayLogicFixture::lastSent(const QString& op) const
{
    const QList<int> numbers = sent(op);
    return numbers.isEmpty() ? -2 : numbers.last();
}

int PlayLogicFixture::seqOf(const VexaRoles& roles)
{
    return roles.value().contains(VexaValue::I32()) ? roles.value().i32() : -1;
}

int PlayLogicFixture::publishedMode() const
{
    const QList<FakePlayer::Call> modes = m_player.callsOf(QStringLiteral("publishPlayMode"));
    return modes.isEmpty() ? -1 : modes.last().number;
}
