#pragma once

#include "ApiCalls.h"
#include "HostProcess.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <string>

// The module's browse tree and menus as an HTTP client walks them: rows of a
// path, set-data on a row's path, the commands that fill the store, and the
// events of a subscription.
class BrowseTreeClient
{
public:
    explicit BrowseTreeClient(const HostProcess& host) : m_api(host.client()) {}

    // The answer of GET /rows; an empty hash when it was not a 200.
    QVariantHash rows(const QString& path, const QString& roles = QStringLiteral("*"), int from = -1, int to = -1) const;
    // The rows of that answer, each an object of every role.
    QVariantList rowList(const QString& path, int from = -1, int to = -1) const;
    // The title of each row (all roles asked for, so absent titles read as empty).
    QStringList titles(const QString& path) const;
    // The path role of the row titled title; empty when there is none.
    QString rowPath(const QString& listPath, const QString& title) const;

    HttpReply setData(const QString& path, const QVariant& value = QVariant::fromValue(nullptr)) const;
    // The uid a create command or create row answered; -1 otherwise.
    int createPlaylist(const QString& name) const;
    int createCollection(const QString& name) const;
    // Appends tracks titled as given to playlist plid, as many per call as the
    // request size allows; true when every call was accepted.
    bool addTracks(int plid, const QStringList& titles) const;

    // A rows subscription of each path; empty when refused.
    QString subscribe(const QStringList& paths) const;
    // What the subscription holds now (the events of changes already answered).
    QVariantList events(const QString& id) const;

    const ApiCalls& api() const { return m_api; }

    static QVariant json(const char* text);
    // Canonical JSON text (keys sorted), for comparisons that print readably.
    static std::string text(const QVariant& value);
    static std::string text(const char* json);
    static std::string text(const QStringList& list) { return text(QVariant(list)); }
    static QVariantHash stringValue(const QString& text);
    static QVariantHash boolValue(bool value);
    // "A0".."A<n-1>" for a prefix "A".
    static QStringList numbered(const QString& prefix, int count);

private:
    ApiCalls m_api;
};
