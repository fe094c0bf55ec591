#include "RootNode.h"

#include "LibraryPaths.h"

#include "Language.h"

bool RootNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const struct
    {
        QString title;
        const char* path;
    } lists[] = {{VEXA_TR("Artists"), "/artists"}, {VEXA_TR("Albums"), "/albums"}, {VEXA_TR("Genres"), "/genres"},
                 {VEXA_TR("Folders"), "/folders"}, {VEXA_TR("All tracks"), "/tracks"}};
    QList<VexaRoles> all;
    for (const auto& list : lists) {
        VexaRoles roles;
        roles.setTitle(list.title);
        roles.setPath(LibraryPaths::at(QString::fromLatin1(list.path)));
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
