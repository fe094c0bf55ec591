#include "playlistUI/BaseNode.h"

#include "PlayListsVocabulary.h"

#include "PlayListManager.h"
#include "PlayListsLog.h"

#include "CMRootWorker.h"
#include "VexaPaths.h"
#include "VexaRowsRoles.h"
#include "CMGlobal.h"
#include "VexaActionReply.h"

namespace {

bool readBoolSetting(const CMPath& path)
{
    return VexaValue(CMRoot()->getValue(path).toHash()).bool_();
}

} // namespace

BaseNode::BaseNode(const CMPath& path, PlayListManager* manager)
    : CMListRowsNode(path),
      m_manager(manager),
      m_playqueueVisible(readBoolSetting(VexaPlayListSettingsPlayqueueVisibilityPath())),
      m_collectionsVisible(readBoolSetting(VexaPlayListSettingsCollectionsVisibilityPath()))
{
}

bool BaseNode::getRowsRequest(const CMGetRowsRequest&)
{
    return true;
}

void BaseNode::sendRowsReply(const QVariantList& rows, int rowsCount, const QString& title, const VexaRoles& roles,
                             CMGetRowsRequest request, bool sliceByRequest)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    LOG4CPLUS_TRACE(logger, "rowsCount: " << rowsCount);
    setTitle(TrString(title));
    VexaRoles header(roles);
    header.setTitle(title);
    VexaRowsRoles reply;
    reply.setRoles(header);
    reply.setRowsCount(rowsCount);

    QVariantList page = rows;
    if (rowsCount >= 1 && sliceByRequest) {
        const int last = rowsCount - 1;
        int from = qMin(qMax(request.fromRow(), 0), last);
        const int to = qMin(qMax(request.toRow(), 0), last);
        if (from > to)
            from = to;
        if (from != 0 || to != last) {
            page.clear();
            for (int i = from; i <= to; ++i)
                page.append(rows.at(i));
        }
    }
    reply.setRows(page);
    LOG4CPLUS_TRACE(logger, "roles: " << header);
    request.reply().setData(reply.toVariant());
    LOG4CPLUS_TRACE(logger, "sent reply with " << rows.size() << " lines");
}

VexaRoles BaseNode::addContextMenuToRoles(VexaRoles roles, int plid)
{
    VexaRoles context;
    context.setTitle(QStringLiteral("Playlist"));
    CMPath path = VexaPlayListPlTrackContextPath();
    path.addParam(Param::Action, QStringLiteral("cmnode"))
        .addParam(Param::Plid, toStr(plid))
        .addParam(Param::ItemId, roles.id())
        .addParam(Param::SeqNum, toStr(roles.value().i32()));
    context.setPath(path);
    context.setType(VexaRolesType::Container);
    context.setContainerType(VexaRolesContainerType::ContextMenu);
    roles.setContext(context);
    return roles;
}

VexaEvent BaseNode::genClosePathEvent()
{
    VexaEvent event;
    event.setRowsType(VexaEventRowsType::Close);
    event.setPath(path());
    return event;
}

VexaRoles BaseNode::createRolesFromPath(const CMPath& path, const QStringList& roleNames)
{
    return CMUINode::getDataRoles(roleNames, path.params());
}

int BaseNode::toInt(const QString& s, int defaultValue)
{
    bool ok = false;
    const int value = s.toInt(&ok, 10);
    return ok ? value : defaultValue;
}

QString BaseNode::toStr(const int& v)
{
    return QString::number(v, 10);
}

VexaRoles BaseNode::contextMenuRoles(const QString& title, const CMPath& path)
{
    VexaRoles roles;
    roles.setTitle(title);
    roles.setPath(path);
    roles.setType(VexaRolesType::Container);
    roles.setContainerType(VexaRolesContainerType::ContextMenu);
    return roles;
}

VexaRoles BaseNode::row(const QString& title, const CMPath& path, VexaRolesType::Enum type)
{
    VexaRoles roles;
    roles.setTitle(title);
    if (!path.isEmpty())
        roles.setPath(path);
    roles.setType(type);
    return roles;
}

VexaRoles BaseNode::inputRow(const QString& title, const CMPath& path, const VexaValue& value)
{
    VexaRoles roles = row(title, path, VexaRolesType::Input);
    roles.setValue(value);
    roles.setModifiable(true);
    return roles;
}

VexaRoles BaseNode::separatorRow()
{
    VexaRoles roles;
    roles.setType(VexaRolesType::Separator);
    return roles;
}

VexaValue BaseNode::stringValue(const QString& text)
{
    VexaValue value;
    value.setString_(text);
    return value;
}

VexaValue BaseNode::boolValue(bool v)
{
    VexaValue value;
    value.setBool_(v);
    return value;
}

void BaseNode::appendRow(QVariantList& rows, const CMGetRowsRequest& request, const VexaRoles& roles)
{
    rows.append(CMGlobal::itemRolesToList(request.roleNames(), roles));
}

CMPath BaseNode::ownPath(std::initializer_list<CMPath::Param> params) const
{
    CMPath result = path();
    for (const CMPath::Param& p : params)
        result.addParam(p.first, p.second);
    return result;
}

void BaseNode::invokeCommand(const CMPath& command, const VexaHash& record, const CMSetDataRequest& request)
{
    CMReply<QVariant> reply;
    // The manager lives on the worker's thread: the handlers run there.
    reply.onSuccess(m_manager, [this, reply, request](const QVariant&) { watchReplyFinished(reply, request); });
    reply.onError(m_manager, [this, reply, request](const CMError&) { watchReplyFinished(reply, request); });
    CMRoot()->invoke(command, record.toVariant(), reply);
}

void BaseNode::watchReplyFinished(const CMReply<QVariant>& reply, CMSetDataRequest request)
{
    passReply(reply, request, true);
}

void BaseNode::passReply(const CMReply<QVariant>& reply, const CMSetDataRequest& request, bool close)
{
    reply.waitForFinished(-1);
    if (reply.hasError()) {
        request.reply().setError(reply.error());
        return;
    }
    if (!close) {
        request.reply().setData(reply.data());
        return;
    }
    QVariantHash value;
    if (!reply.dataAs(&value)) {
        request.reply().setError(CMError(CMError::DefaultName(), CMError::DefaultTitle(),
                                         TrString(cmReplyWrongTypeText())));
        return;
    }
    VexaActionReply answer(value);
    answer.setEvents(answer.events() + QList<VexaEvent>{genClosePathEvent()});
    request.reply().setData(answer.toVariant());
}
