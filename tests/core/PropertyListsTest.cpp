#include "PropertyLists.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

namespace ventaro {
namespace {

TEST(PropertyLists, AreTheseBytesWithoutALineFeedAtTheEnd) {
    EXPECT_EQ(launchDaemonPropertyList() + '\n', testData("helper.plist"));
    EXPECT_EQ(launchAgentPropertyList("/Apps/Ventaro", false) + '\n', testData("agent.plist"));
    EXPECT_EQ(launchAgentPropertyList("/A & <B>/Ventaro", true) + '\n',
              testData("agent_minimized.plist"));
}

TEST(PropertyLists, TheDesktopEntryQuotesTheProgram) {
    EXPECT_EQ(autostartDesktopEntry("/opt/Ventaro", true),
              "[Desktop Entry]\nType=Application\nName=Ventaro\n"
              "Exec=\"/opt/Ventaro\" --minimized\nTerminal=false\n"
              "X-GNOME-Autostart-enabled=true\nX-Ventaro-Label=com.ventaro.app\n");
    const std::string odd = autostartDesktopEntry("/a b/\"x\"/$HOME/100%/`y`/\\z", false);
    EXPECT_NE(odd.find(R"(Exec="/a b/\\"x\\"/\\$HOME/100%%/\\`y\\`/\\\\z")"
                       "\n"),
              std::string::npos)
        << odd;
}

} // namespace
} // namespace ventaro
