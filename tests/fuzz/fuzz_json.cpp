// Any bytes through the JSON reader: a value or an error, never a crash. A
// value read is written as text that reads back as the same value, and the
// one-pass reader of a track's fields agrees with the roles' own reading.

#include <VexaJson.h>
#include <VexaTrackFields.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    const QString utf16 = QString::fromUtf8(text);
    if (!(VexaTrackFields::read(utf16) == VexaTrackFields::readThroughRoles(utf16)))
        std::abort();

    QString error;
    const QVariant value = VexaJson::parse(text, &error);
    if (!error.isEmpty())
        return 0;
    const QByteArray written = VexaJson::toJson(value);
    const QVariant again = VexaJson::parse(written, &error);
    if (!error.isEmpty() || VexaJson::toJson(again) != written)
        std::abort();
    return 0;
}
