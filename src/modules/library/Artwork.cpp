#include "Artwork.h"

#include "LibraryLog.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSaveFile>

Artwork::Artwork(const QString& publicDir) : m_publicDir(publicDir)
{
    QDir().mkpath(publicDir);
}

QString Artwork::thumbnailOf(const QByteArray& picture)
{
    if (picture.isEmpty())
        return QString();
    const QByteArray hash = QCryptographicHash::hash(picture, QCryptographicHash::Sha1).toHex();
    const auto known = m_known.constFind(hash);
    if (known != m_known.constEnd())
        return known.value();

    // PNG keeps its transparency; everything else becomes JPEG.
    const bool png = picture.startsWith("\x89PNG");
    const QString name = QString::fromLatin1(hash) + (png ? QStringLiteral(".png") : QStringLiteral(".jpg"));
    const QString file = m_publicDir + QLatin1Char('/') + name;
    if (!QFile::exists(file)) {
        QImage image = QImage::fromData(picture);
        if (image.isNull()) {
            m_known.insert(hash, QString());
            return QString();
        }
        if (image.width() > ThumbnailSize || image.height() > ThumbnailSize)
            image = image.scaled(ThumbnailSize, ThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        // Written whole or not at all: the host may serve it the moment it exists.
        QSaveFile out(file);
        if (!out.open(QIODevice::WriteOnly) || !image.save(&out, png ? "PNG" : "JPEG", 85) || !out.commit()) {
            LOG4CPLUS_WARN(libraryLogger(), "Cannot write thumbnail " << file);
            return QString();
        }
    }
    m_known.insert(hash, name);
    return name;
}

QString Artwork::folderThumbnail(const QString& dir)
{
    const auto known = m_folders.constFind(dir);
    if (known != m_folders.constEnd())
        return known.value();
    QString name;
    const QStringList covers = QDir(dir).entryList(
        {QStringLiteral("cover.*"), QStringLiteral("folder.*"), QStringLiteral("front.*")}, QDir::Files | QDir::Readable,
        QDir::Name | QDir::IgnoreCase);
    for (const QString& cover : covers) {
        const QString suffix = cover.section(QLatin1Char('.'), -1).toLower();
        if (suffix != QLatin1String("jpg") && suffix != QLatin1String("jpeg") && suffix != QLatin1String("png"))
            continue;
        QFile file(dir + QLatin1Char('/') + cover);
        // A cover is a picture, not a film: anything huge is not read.
        if (file.size() > 32 * 1024 * 1024 || !file.open(QIODevice::ReadOnly))
            continue;
        name = thumbnailOf(file.readAll());
        if (!name.isEmpty())
            break;
    }
    m_folders.insert(dir, name);
    return name;
}

QString Artwork::urlOf(const QString& name)
{
    return name.isEmpty() ? QString() : QStringLiteral("/files/library/") + name;
}
