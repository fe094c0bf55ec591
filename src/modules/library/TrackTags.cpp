#include "TrackTags.h"

#include "FileNames.h"

#include <QFileInfo>

#include <attachedpictureframe.h>
#include <fileref.h>
#include <flacfile.h>
#include <id3v2tag.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <opusfile.h>
#include <tpropertymap.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <xiphcomment.h>

namespace {

QString toQString(const TagLib::String& text)
{
    return QString::fromUtf8(text.toCString(true)).trimmed();
}

QByteArray toBytes(const TagLib::ByteVector& bytes)
{
    return QByteArray(bytes.data(), int(bytes.size()));
}

// "3/12" and "3" both give 3.
int leadingNumber(const TagLib::PropertyMap& properties, const char* key)
{
    if (!properties.contains(key) || properties[key].isEmpty())
        return 0;
    return toQString(properties[key].front()).section(QLatin1Char('/'), 0, 0).toInt();
}

QByteArray pictureOf(const TagLib::List<TagLib::FLAC::Picture*>& pictures)
{
    for (const TagLib::FLAC::Picture* picture : pictures) {
        if (picture->type() == TagLib::FLAC::Picture::FrontCover)
            return toBytes(picture->data());
    }
    return pictures.isEmpty() ? QByteArray() : toBytes(pictures.front()->data());
}

QByteArray pictureOf(TagLib::ID3v2::Tag* tag)
{
    if (!tag)
        return QByteArray();
    QByteArray first;
    for (TagLib::ID3v2::Frame* frame : tag->frameListMap()["APIC"]) {
        const auto* apic = dynamic_cast<TagLib::ID3v2::AttachedPictureFrame*>(frame);
        if (!apic)
            continue;
        if (apic->type() == TagLib::ID3v2::AttachedPictureFrame::FrontCover)
            return toBytes(apic->picture());
        if (first.isEmpty())
            first = toBytes(apic->picture());
    }
    return first;
}

// The picture and the mime type, by the kind of file TagLib opened.
void readKind(TagLib::File* file, TrackTags* tags)
{
    if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/flac");
        tags->picture = pictureOf(flac->pictureList());
    } else if (auto* mpeg = dynamic_cast<TagLib::MPEG::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/mpeg");
        tags->picture = pictureOf(mpeg->ID3v2Tag());
    } else if (auto* vorbis = dynamic_cast<TagLib::Ogg::Vorbis::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/ogg");
        tags->picture = pictureOf(vorbis->tag()->pictureList());
    } else if (auto* opus = dynamic_cast<TagLib::Ogg::Opus::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/ogg; codecs=opus");
        tags->picture = pictureOf(opus->tag()->pictureList());
    } else if (auto* mp4 = dynamic_cast<TagLib::MP4::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/mp4");
        const TagLib::MP4::Tag* tag = mp4->tag();
        if (tag && tag->contains("covr")) {
            const TagLib::MP4::CoverArtList covers = tag->item("covr").toCoverArtList();
            if (!covers.isEmpty())
                tags->picture = toBytes(covers.front().data());
        }
    } else if (auto* wav = dynamic_cast<TagLib::RIFF::WAV::File*>(file)) {
        tags->mimeType = QStringLiteral("audio/wav");
        tags->picture = pictureOf(wav->hasID3v2Tag() ? wav->ID3v2Tag() : nullptr);
    }
}

} // namespace

std::optional<TrackTags> TrackTags::read(const QString& path)
{
    const QByteArray name = FileNames::encode(path);
    TagLib::FileRef ref(name.constData(), true, TagLib::AudioProperties::Average);
    if (ref.isNull() || !ref.file()->isValid() || !ref.audioProperties()
        || ref.audioProperties()->lengthInMilliseconds() <= 0)
        return std::nullopt;

    TrackTags tags;
    const int ms = ref.audioProperties()->lengthInMilliseconds();
    tags.durationSeconds = qMax(1, (ms + 500) / 1000);
    if (TagLib::Tag* tag = ref.tag()) {
        tags.title = toQString(tag->title());
        tags.artist = toQString(tag->artist());
        tags.album = toQString(tag->album());
        tags.genre = toQString(tag->genre());
        tags.year = int(tag->year());
        tags.trackNumber = int(tag->track());
    }
    const TagLib::PropertyMap properties = ref.file()->properties();
    if (properties.contains("ALBUMARTIST") && !properties["ALBUMARTIST"].isEmpty())
        tags.albumArtist = toQString(properties["ALBUMARTIST"].front());
    tags.discNumber = leadingNumber(properties, "DISCNUMBER");
    if (!tags.trackNumber)
        tags.trackNumber = leadingNumber(properties, "TRACKNUMBER");
    readKind(ref.file(), &tags);
    if (tags.title.isEmpty())
        tags.title = FileNames::display(QFileInfo(path).completeBaseName());
    return tags;
}
