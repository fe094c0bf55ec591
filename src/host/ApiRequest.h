#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// One HTTP request as the API sees it: method, the URL's path, the decoded
// query arguments (in order, NUL bytes kept so they can be refused), the
// headers, the body and the client's address.
class ApiRequest
{
public:
    using Argument = QPair<QString, QString>;
    using Header = QPair<QByteArray, QByteArray>;

    ApiRequest() = default;
    ApiRequest(const QByteArray& method, const QString& path, const QList<Argument>& query, const QByteArray& body,
               const QList<Header>& headers = {}, const QString& client = QString())
        : m_method(method), m_path(path), m_query(query), m_body(body), m_headers(headers), m_client(client)
    {
    }

    const QByteArray& method() const { return m_method; }
    const QString& path() const { return m_path; }
    const QList<Argument>& query() const { return m_query; }
    const QByteArray& body() const { return m_body; }
    // The remote address (IPv4 or IPv6 text) that limits per client count against.
    const QString& client() const { return m_client; }

    bool hasArgument(const QString& name) const;
    // The first value of the argument name; fallback when absent.
    QString argument(const QString& name, const QString& fallback = QString()) const;
    // The header name (in any case), its lines joined by ", " as HTTP reads
    // a repeated header; empty when absent.
    QByteArray header(const QByteArray& name) const;

private:
    QByteArray m_method;
    QString m_path;
    QList<Argument> m_query;
    QByteArray m_body;
    QList<Header> m_headers;
    QString m_client;
};
