#include "Controller.h"
#include "PlaylistsApi.h"

#include <gtest/gtest.h>

// Success texts never leave the module, so their form is checked here. Parts
// that hold markers of their own ("%1") must come through as they are.
TEST(CommandsApiMessageFormat, ErrorsJoinWithBlanksAndSuccessesPutTheirDetailInBrackets)
{
    Controller controller(nullptr, nullptr);
    EXPECT_EQ(controller.buildErrMsg(QStringLiteral("A."), QStringLiteral("B."), QString()), QStringLiteral("A. B."));
    EXPECT_EQ(controller.buildErrMsg(QStringLiteral("A."), QStringLiteral("B."), QStringLiteral("7")), QStringLiteral("A. B. (7)"));
    EXPECT_EQ(controller.buildOkMsg(QStringLiteral("Done."), QStringLiteral("Party"), QString()), QStringLiteral("Done. (Party)"));
    EXPECT_EQ(controller.buildOkMsg(QStringLiteral("Done."), QStringLiteral("Party"), QStringLiteral("3")),
              QStringLiteral("Done. Party (3)"));
    EXPECT_EQ(controller.buildErrMsg(QStringLiteral("%2"), QStringLiteral("%1"), QStringLiteral("%3")), QStringLiteral("%2 %1 (%3)"));
    EXPECT_EQ(controller.buildOkMsg(QStringLiteral("%2"), QStringLiteral("%1%"), QString()), QStringLiteral("%2 (%1%)"));
}
