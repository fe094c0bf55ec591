// Any JSON object as the value of every playlist command: each field reads
// without a crash, and the item records survive their own round trip.

#include <VexaJson.h>
#include <VexaPlayListClAddRemoveItem.h>
#include <VexaPlayListPlAddExternalItems.h>
#include <VexaPlayListPlAddItems.h>
#include <VexaPlayListPlMoveItems.h>
#include <VexaPlayListPlRemoveItems.h>
#include <VexaPlayListPlSetName.h>
#include <VexaPlayListPlSetRepeat.h>
#include <VexaPlayListPlSetShuffle.h>
#include <VexaValue.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QString error;
    const QVariant value = VexaJson::parse(QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size)), &error);
    const QVariantHash hash = value.toHash();

    VexaPlayListPlAddExternalItems external(hash);
    external.plid();
    external.mode();
    for (const VexaPlayListItem& item : external.items()) {
        if (!(VexaPlayListItem::fromHash(item.toHash()) == item))
            std::abort();
    }
    VexaPlayListPlAddItems add(hash);
    add.fromPlid();
    for (const CMPath& path : add.items())
        path.toEncoded();
    VexaPlayListPlMoveItems move(hash);
    move.items();
    move.to();
    VexaPlayListPlRemoveItems(hash).items();
    VexaPlayListPlSetName(hash).name();
    VexaPlayListPlSetRepeat(hash).mode();
    VexaPlayListPlSetShuffle(hash).mode();
    VexaPlayListClAddRemoveItem(hash).clid();
    VexaJson::toJson(VexaValue(hash).toVariant());
    return 0;
}
