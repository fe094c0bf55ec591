#pragma once

#include "ApiCalls.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

// The real host with the test module, started for each test, over HTTP.
class HostFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    // The port is known once the host started.
    ApiCalls api() const { return ApiCalls(m_host.client()); }

    // Makes the test module emit a rows notification: {"path", "kind", "rows"}.
    void notify(const QVariant& notification) const
    {
        const HttpReply reply = api().setData(QStringLiteral("testmod:/notify"), notification);
        ASSERT_EQ(reply.status, 200) << reply.body.constData();
    }
    // The events waiting in subscription id, without waiting for more.
    QVariantList pollNow(const QString& id) const
    {
        const HttpReply reply = api().poll(id, 0);
        EXPECT_EQ(reply.status, 200) << reply.body.constData();
        return reply.json().toList();
    }

    HostProcess m_host;
};
