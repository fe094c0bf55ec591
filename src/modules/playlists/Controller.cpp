#include "Controller.h"

#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "CMError.h"
#include "Language.h"
#include "VexaActionReply.h"
#include "VexaPaths.h"

namespace {

const log4cplus::Logger& logger()
{
    return PlayListsLog::logger();
}

} // namespace

Controller::Controller(PlayListWorker* worker, PlayListManager* manager)
    : QObject(nullptr), m_worker(worker), m_manager(manager)
{
}

bool Controller::handleSetData(const CMSetDataRequest& request)
{
    VEXA_LOG_ENTER(TRACE, logger(), "routing " << request.path() << ", value: " << request.value());
    const CMPath& path = request.path();
    QString msg;
    int uid = -1;
    if (path == VexaPlayListPlPrepareItemsPath()) {
        plPrepareItems(request);
    } else if (path == VexaPlayListPlAddItemsPath()) {
        plAddItems(request);
    } else if (path == VexaPlayListPlCreatePath()) {
        const bool ok = plCreate(request, msg, uid);
        setReply(request, ok, msg, uid);
    } else if (path == VexaPlayListClCreatePath()) {
        const bool ok = clCreate(request, msg, uid);
        setReply(request, ok, msg, uid);
    } else {
        // The commands that answer true or a reason.
        using Handler = bool (Controller::*)(CMSetDataRequest, QString&);
        const struct
        {
            CMPath path;
            Handler handler;
        } commands[] = {
            {VexaPlayListPlPlayPath(), &Controller::plPlay},
            {VexaPlayListPlClearPath(), &Controller::plClearItems},
            {VexaPlayListPlSetNamePath(), &Controller::plSetName},
            {VexaPlayListPlSetShufflePath(), &Controller::plSetShuffle},
            {VexaPlayListPlSetRepeatPath(), &Controller::plSetRepeat},
            {VexaPlayListPlDeletePath(), &Controller::plDelete},
            {VexaPlayListPlRemoveItemsPath(), &Controller::plRemoveItems},
            {VexaPlayListPlAddExternalItemsPath(), &Controller::plAddExternalItems},
            {VexaPlayListPlMoveItemspath(), &Controller::plMoveItems},
            {VexaPlayListClAddItemPath(), &Controller::clAddItem},
            {VexaPlayListClRemoveItemPath(), &Controller::clRemoveItem},
            {VexaPlayListClDeletePath(), &Controller::clDelete},
        };
        for (const auto& command : commands) {
            if (path == command.path) {
                const bool ok = (this->*command.handler)(request, msg);
                setReply(request, ok, msg);
                return true;
            }
        }
        return false;
    }
    return true;
}

void Controller::setReply(const CMSetDataRequest& request, bool ok, const QString& msg, std::optional<int> created)
{
    VEXA_LOG_ENTER(TRACE, logger(),
                   "res: " << boolText(ok) << (created ? " val: " + QString::number(*created) : QString())
                           << " msg: " << msg);
    if (!ok) {
        request.reply().setError(CMError(CMError::DefaultName(), CMError::DefaultTitle(), TrString(msg)));
        return;
    }
    // A command that creates answers the new uid, every other one true.
    VexaValue value;
    if (created)
        value.setI32_(*created);
    else
        value.setBool_(true);
    request.reply().setData(VexaActionReply::withValue(value).toVariant());
}

QString Controller::buildErrMsg(const QString& a, const QString& b, const QString& c)
{
    if (!c.isEmpty())
        return QStringLiteral("%1 %2 (%3)").arg(a, b, c);
    return QStringLiteral("%1 %2").arg(a, b);
}

QString Controller::buildOkMsg(const QString& a, const QString& b, const QString& c)
{
    if (!c.isEmpty())
        return QStringLiteral("%1 %2 (%3)").arg(a, b, c);
    return QStringLiteral("%1 (%2)").arg(a, b);
}

bool Controller::checkNonemptyString(const QString& value, const QString& field, const QString& prefix, QString& errMsg)
{
    if (!value.isEmpty())
        return true;
    errMsg = buildErrMsg(prefix, VEXA_TR("Please provide a non-empty string as field."), field);
    return false;
}

bool Controller::checkPlayList(const PlayListBase* pl, const int& plid, const QString& prefix, QString& errMsg)
{
    if (pl)
        return true;
    errMsg = buildErrMsg(prefix, VEXA_TR("There is no playlist with this ID."), QString::number(plid));
    LOG4CPLUS_ERROR(logger(), "There is no playlist with ID : " << plid);
    return false;
}

bool Controller::checkPlayListId(const int& plid, const QString& prefix, QString& errMsg)
{
    if (plid != -1)
        return true;
    errMsg = buildErrMsg(prefix, VEXA_TR("Cannot find playlist with invalid ID."), QString::number(plid));
    LOG4CPLUS_ERROR(logger(), "Cannot find playlist with invalid ID : " << plid);
    return false;
}

PlayListBase* Controller::findPlayList(int plid, const QString& prefix, QString& msg)
{
    PlayListBase* playlist = m_manager->getPlayListByUid(plid);
    if (!checkPlayList(playlist, plid, prefix, msg))
        LOG4CPLUS_ERROR(logger(), "Playlist id: " << plid << " doesn't exist");
    return playlist;
}
