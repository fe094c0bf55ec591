#include <gtest/gtest.h>

#include <QCoreApplication>

namespace {

// Event loops, queued connections and threads need an application object.
class QtTestApplication : public ::testing::Environment
{
public:
    void SetUp() override
    {
        static int argc = 1;
        static char name[] = "platform_tests";
        static char* argv[] = {name, nullptr};
        m_app = new QCoreApplication(argc, argv);
    }
    void TearDown() override { delete m_app; }

private:
    QCoreApplication* m_app = nullptr;
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new QtTestApplication);

} // namespace
