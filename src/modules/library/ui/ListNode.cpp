#include "ui/ListNode.h"

#include "Browser.h"
#include "LibraryRoles.h"

bool ListNode::getRowsRequest(const CMGetRowsRequest& request)
{
    const std::optional<Browser::Listing> listing = m_browser->listingOf(request.path());
    if (!listing)
        return false;
    const int count = m_browser->count(*listing);
    QList<VexaRoles> rows;
    int from = 0;
    int to = 0;
    if (pageBounds(request, count, &from, &to)) {
        for (const LibraryEntry& entry : m_browser->page(*listing, from, to))
            rows.append(LibraryRoles::rowOf(entry));
    }
    answer(request, listing->title, rows, count);
    return true;
}
