// Any text as a content path: taken apart and put together again without a
// crash, and the encoded form reads back as the same path.

#include <CMPath.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const CMPath path(QString::fromUtf8(reinterpret_cast<const char*>(data), int(size)));
    const QString encoded = path.toEncoded();
    if (!(CMPath(encoded) == path) || CMPath(encoded).toEncoded() != encoded)
        std::abort();
    path.splitBase();
    path.lastSegment();
    path.base();
    path.appended(path.lastSegment()).startsWith(path);
    for (const auto& param : path.params())
        path.withParam(param.first, param.second);
    return 0;
}
