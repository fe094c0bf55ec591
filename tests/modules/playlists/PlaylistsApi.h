#pragma once

#include "ApiCalls.h"
#include "HostProcess.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <gtest/gtest.h>

#include <ostream>

// The playlists module as a client of the real host sees it: its commands
// over POST /api/v1/data, its lists over GET /api/v1/rows, and, for checking
// that nothing changed, a read-only look at the store file under the host's
// root.
class PlaylistsApi
{
public:
    explicit PlaylistsApi(const HostProcess& host);

    // POST {"path": "playlists:/<command>", "value": value}.
    HttpReply command(const QString& command, const QVariant& value) const;
    // The same with the value given as JSON text.
    HttpReply command(const QString& command, const char* jsonValue) const;
    // The uid a create command answered; -1 when it did not answer one.
    int create(const QString& command, const QString& name) const;
    // Adds tracks titled as given to the end of a playlist; true when accepted.
    bool addTracks(int plid, const QStringList& titles) const;

    // "title|path" of every row of a list such as "playlists:/root".
    QStringList rows(const QString& path) const;
    QStringList titles(const QString& path) const;
    // Every row of every table of the store, sorted; a line naming the
    // failure when the file cannot be read.
    QStringList store() const;
    // The root's rows followed by the store: what a refusal must leave as it was.
    QStringList state() const;

    const ApiCalls& api() const { return m_api; }

    // The item record of an audio track as clients send it.
    static QVariantHash track(const QString& title);
    static QVariant json(const char* text);
    // Whether a reply is the success answer carrying this value.
    static ::testing::AssertionResult answered(const HttpReply& reply, const QVariantHash& value);
    static ::testing::AssertionResult answeredTrue(const HttpReply& reply);

private:
    ApiCalls m_api;
    QString m_storeFile;
};

// Lets failed expectations show texts and lists of texts readably.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
