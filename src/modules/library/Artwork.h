#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// The thumbnails of pictures found in files and folders, written once under
// the public folder the host serves (data-rw/library/public). A thumbnail is
// named by the SHA-1 of the picture it was made from, so the same cover in
// twenty files is scaled once, and a name never changes its content.
class Artwork
{
public:
    static constexpr int ThumbnailSize = 300;

    explicit Artwork(const QString& publicDir);

    // The thumbnail's file name for picture, written on first sight; empty
    // when picture is no image QImage reads.
    QString thumbnailOf(const QByteArray& picture);
    // The thumbnail of the cover file of dir (cover, folder, front; .jpg,
    // .jpeg or .png), remembered per folder until forgetFolders().
    QString folderThumbnail(const QString& dir);
    void forgetFolders() { m_folders.clear(); }

    // The URL the host serves a thumbnail at.
    static QString urlOf(const QString& name);

private:
    QString m_publicDir;
    QHash<QByteArray, QString> m_known;
    QHash<QString, QString> m_folders;
};
