#include "PlayListsVocabulary.h"

#include "VexaPaths.h"

CMPath itemsPathOf(int uid)
{
    return uid == 0 ? VexaPlayListPqGetItemsPath() : VexaPlayListPlGetItemsPath().appended(QString::number(uid));
}

VexaMediaData playLogicMediaData()
{
    VexaMetaData meta;
    meta.setPlayLogicPath(VexaPlayListsPlayLogicPath());
    VexaMediaData media;
    media.setMetaData(meta);
    return media;
}
