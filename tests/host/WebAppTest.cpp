#include "HostProcess.h"

#include <gtest/gtest.h>

namespace {

class WebApp : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    HttpReply getIfNoneMatch(const QByteArray& target, const QByteArray& etag) const
    {
        return m_host.client().raw("GET " + target + " HTTP/1.1\r\nHost: localhost\r\nIf-None-Match: " + etag
                                       + "\r\nConnection: close\r\n\r\n",
                                   15000);
    }

    HostProcess m_host;
};

} // namespace

TEST_F(WebApp, ThePageAndItsFilesAreServedTypedAndRevalidatedByTheirETag)
{
    const HttpReply page = m_host.client().get(QStringLiteral("/"));
    ASSERT_EQ(page.status, 200) << page.body.constData();
    EXPECT_EQ(page.headers.value("content-type"), QByteArray("text/html; charset=utf-8"));
    EXPECT_TRUE(page.body.contains(R"(<script type="module" src="main.js">)"));
    EXPECT_TRUE(page.headers.value("content-security-policy").startsWith("default-src 'self'"));
    EXPECT_EQ(m_host.client().get(QStringLiteral("/index.html")).body, page.body);

    const HttpReply script = m_host.client().get(QStringLiteral("/main.js"));
    EXPECT_EQ(script.status, 200);
    EXPECT_EQ(script.headers.value("content-type"), QByteArray("text/javascript; charset=utf-8"));
    EXPECT_EQ(m_host.client().get(QStringLiteral("/app.css")).headers.value("content-type"),
              QByteArray("text/css; charset=utf-8"));

    const QByteArray etag = page.headers.value("etag");
    ASSERT_FALSE(etag.isEmpty());
    EXPECT_NE(script.headers.value("etag"), etag);
    const HttpReply unchanged = getIfNoneMatch("/", etag);
    EXPECT_EQ(unchanged.status, 304);
    EXPECT_TRUE(unchanged.body.isEmpty());
    EXPECT_EQ(getIfNoneMatch("/main.js", etag).status, 200);
}

TEST_F(WebApp, NoOtherNameReachesAFileAndUnknownNamesAnswerJsonErrors)
{
    for (const char* target : {"/nope.js", "/..%2Fhost.qrc", "/%2E%2E%2Fopenapi.json", "/openapi.json", "/host.qrc",
                               "/main.js/x", "/api", "/files", "/Index.html"}) {
        const HttpReply reply = m_host.client().get(QString::fromLatin1(target));
        EXPECT_EQ(reply.status, 404) << target;
        EXPECT_EQ(reply.errorName(), QStringLiteral("notFound")) << target;
    }
    EXPECT_EQ(m_host.client().post(QStringLiteral("/"), QByteArray()).status, 405);
}
