#include "ui/MenuNode.h"

#include "Browser.h"
#include "LibraryPaths.h"

#include "Language.h"
#include "VexaPaths.h"

MenuNode::MenuNode(const CMPath& path, Browser* browser) : LibraryNode(path, browser)
{
    setContainerType(VexaRolesContainerType::ContextMenu);
}

bool MenuNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const CMPath item(request.path().param(LibraryPaths::ItemId));
    // A menu is only for what the library holds.
    if (!m_browser->holds(item))
        return false;
    const QString itemId = item.toEncoded();
    const struct
    {
        QString title;
        CMPath chooser;
    } entries[] = {
        {VEXA_TR("Add to play queue"), VexaPlayListPlSelectAddModePath().withParam(QStringLiteral("plid"), QStringLiteral("0"))},
        {VEXA_TR("Add to playlist"), VexaPlayListPlAddToPlaylistPath()},
    };
    QList<VexaRoles> all;
    for (const auto& entry : entries) {
        VexaRoles roles;
        roles.setTitle(entry.title);
        roles.setPath(CMPath(entry.chooser)
                          .addParam(QStringLiteral("action"), QStringLiteral("cmnode"))
                          .addParam(QStringLiteral("itemid"), itemId));
        roles.setType(VexaRolesType::Container);
        roles.setContainerType(VexaRolesContainerType::ContextMenu);
        all.append(roles);
    }
    int from = 0;
    int to = 0;
    pageBounds(request, all.size(), &from, &to);
    answer(request, VEXA_TR("Context menu") + QStringLiteral(" - ") + request.path().param(LibraryPaths::Title),
           all.mid(from, to - from + 1), all.size());
    return true;
}
