// vexa-demo-music FOLDER: fills FOLDER with a handful of short tagged tones
// in two albums, one with an embedded cover, so that a first run of the host
// has something to browse, add and hear.
#include "MediaFiles.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: vexa-demo-music FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const struct
    {
        const char* artist;
        const char* album;
        const char* title;
        int frequency;
        MediaFiles::Format format;
        const char* file;
    } tracks[] = {
        {"Vexa Ensemble", "Tuning Forks", "A Above Middle C", 440, MediaFiles::Format::Flac, "01 A.flac"},
        {"Vexa Ensemble", "Tuning Forks", "Concert C", 523, MediaFiles::Format::Flac, "02 C.flac"},
        {"Vexa Ensemble", "Tuning Forks", "Bright E", 659, MediaFiles::Format::Flac, "03 E.flac"},
        {"Sine Wave Club", "Low End", "Deep G", 196, MediaFiles::Format::Mp3, "01 G.mp3"},
        {"Sine Wave Club", "Low End", "Hum", 110, MediaFiles::Format::Mp3, "02 Hum.mp3"},
    };
    const QByteArray cover = MediaFiles::picture(0x2a6f97, 300, "PNG");
    int number = 0;
    for (const auto& track : tracks) {
        const QString dir = folder + QLatin1Char('/') + QLatin1String(track.artist) + QLatin1Char('/') + QLatin1String(track.album);
        const QString path = dir + QLatin1Char('/') + QLatin1String(track.file);
        ++number;
        if (!QDir().mkpath(dir) || !MediaFiles::writeTone(path, 8000, track.frequency, track.format)
            || !MediaFiles::tag(path,
                                {{"TITLE", track.title}, {"ARTIST", track.artist}, {"ALBUM", track.album},
                                 {"GENRE", "Demo"}, {"TRACKNUMBER", QString::number(number <= 3 ? number : number - 3)}},
                                track.format == MediaFiles::Format::Flac ? cover : QByteArray())) {
            std::fprintf(stderr, "could not write %s\n", qPrintable(path));
            return 1;
        }
    }
    std::printf("Demo music written to %s\n", qPrintable(folder));
    return 0;
}
