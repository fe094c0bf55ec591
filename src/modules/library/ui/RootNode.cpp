#include "ui/RootNode.h"

#include "Browser.h"
#include "LibraryPaths.h"

#include "Language.h"

bool RootNode::getRowsRequest(const CMGetRowsRequest& request)
{
    QList<VexaRoles> all;
    for (const char* list : {"/artists", "/albums", "/genres", "/folders", "/tracks"}) {
        // Each list's row carries the title the list itself shows.
        const CMPath path = LibraryPaths::at(QString::fromLatin1(list));
        VexaRoles roles;
        roles.setTitle(m_browser->listingOf(path)->title);
        roles.setPath(path);
        roles.setType(VexaRolesType::Container);
        all.append(roles);
    }
    VexaRoles search;
    search.setTitle(VEXA_TR("Search"));
    search.setPath(LibraryPaths::search());
    search.setType(VexaRolesType::Input);
    VexaValue empty;
    empty.setString_(QString());
    search.setValue(empty);
    search.setModifiable(true);
    all.append(search);

    int from = 0;
    int to = 0;
    pageBounds(request, all.size(), &from, &to);
    answer(request, VEXA_TR("Library"), all.mid(from, to - from + 1), all.size());
    return true;
}
