#include "PropertyLists.h"

#include <gtest/gtest.h>

namespace ventaro {
namespace {

constexpr const char* head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                             "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                             "<plist version=\"1.0\">\n"
                             "<dict>\n"
                             "    <key>Label</key>\n";

TEST(PropertyLists, AreTheseBytes) {
    EXPECT_EQ(launchDaemonPropertyList(),
              std::string(head).append(
                  "    <string>com.ventaro.helper</string>\n"
                  "    <key>ProgramArguments</key>\n"
                  "    <array>\n"
                  "        <string>/Library/PrivilegedHelperTools/com.ventaro.helper</string>\n"
                  "    </array>\n"
                  "    <key>RunAtLoad</key>\n"
                  "    <true/>\n"
                  "    <key>KeepAlive</key>\n"
                  "    <true/>\n"
                  "    <key>StandardOutPath</key>\n"
                  "    <string>/var/log/com.ventaro.helper.log</string>\n"
                  "    <key>StandardErrorPath</key>\n"
                  "    <string>/var/log/com.ventaro.helper.err</string>\n"
                  "</dict>\n"
                  "</plist>"));
    const auto agent = [](const std::string& arguments) {
        std::string text = head;
        text.append("    <string>com.ventaro.app</string>\n"
                    "    <key>ProgramArguments</key>\n"
                    "    <array>\n");
        text.append(arguments);
        return text.append("    </array>\n"
                           "    <key>RunAtLoad</key>\n"
                           "    <true/>\n"
                           "    <key>ProcessType</key>\n"
                           "    <string>Interactive</string>\n"
                           "</dict>\n"
                           "</plist>");
    };
    EXPECT_EQ(launchAgentPropertyList("/Apps/Ventaro", false),
              agent("    <string>/Apps/Ventaro</string>\n"));
    EXPECT_EQ(launchAgentPropertyList("/A & <B>/Ventaro", true),
              agent("    <string>/A &amp; &lt;B&gt;/Ventaro</string>\n"
                    "    <string>--minimized</string>\n"));
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
