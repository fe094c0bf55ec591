#include "BenchTracks.h"

QByteArray BenchTracks::roles(int i)
{
    const QByteArray n = QByteArray::number(i);
    return "{\"title\":\"Track " + n + "\",\"type\":\"audio\",\"icon\":\"http://artwork.example/" + n
        + ".jpg\",\"mediaData\":{\"metaData\":{\"artist\":\"Some Artist\",\"album\":\"Album " + QByteArray::number(i / 12)
        + "\",\"genre\":\"Jazz\",\"serviceId\":\"library\"},\"resources\":[{\"uri\":\"file:///music/Some%20Artist/"
        + n + ".flac\",\"duration\":" + QByteArray::number(180 + i % 120) + ",\"mimeType\":\"audio/flac\"}]}}";
}

QByteArray BenchTracks::item(int i)
{
    return "{\"vexaRoles\":\"" + roles(i).replace('"', "\\\"") + "\"}";
}
