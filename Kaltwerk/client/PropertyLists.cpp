#include "PropertyLists.h"

#include "HelperIPC.h"

#include <initializer_list>

namespace ventaro {

namespace {

constexpr std::string_view minimizedArgument = "--minimized";

constexpr std::string_view head =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>Label</key>
    <string>)";

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::string escapedForXml(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

/// An argument of an "Exec" line: quoted, with `%` doubled against field codes, and backslashes
/// doubled once more because the line is itself a string.
std::string quotedForDesktopEntry(std::string_view argument) {
    std::string quoted = "\"";
    for (const char character : argument) {
        switch (character) {
        case '"':
        case '`':
        case '$':
            quoted += "\\\\";
            quoted += character;
            break;
        case '\\':
            quoted += "\\\\\\\\";
            break;
        case '%':
            quoted += "%%";
            break;
        case '\n':
            quoted += "\\n";
            break;
        default:
            quoted += character;
        }
    }
    return quoted + '"';
}

} // namespace

std::string launchDaemonPropertyList() {
    return joined({head, HelperConstants::daemonLabel, R"(</string>
    <key>ProgramArguments</key>
    <array>
        <string>)",
                   HelperConstants::helperBinaryInstallPath, R"(</string>
    </array>
    <key>RunAtLoad</key>
    <true/>
    <key>KeepAlive</key>
    <true/>
    <key>StandardOutPath</key>
    <string>/var/log/com.ventaro.helper.log</string>
    <key>StandardErrorPath</key>
    <string>/var/log/com.ventaro.helper.err</string>
</dict>
</plist>)"});
}

std::string launchAgentPropertyList(std::string_view program, bool minimized) {
    std::string arguments = "    <string>" + escapedForXml(program) + "</string>\n";
    if (minimized) {
        arguments += "    <string>" + std::string(minimizedArgument) + "</string>\n";
    }
    return joined({head, loginItemLabel, R"(</string>
    <key>ProgramArguments</key>
    <array>
)",
                   arguments, R"(    </array>
    <key>RunAtLoad</key>
    <true/>
    <key>ProcessType</key>
    <string>Interactive</string>
</dict>
</plist>)"});
}

std::string autostartDesktopEntry(std::string_view program, bool minimized) {
    return "[Desktop Entry]\nType=Application\nName=Ventaro\nExec=" +
           quotedForDesktopEntry(program) +
           (minimized ? " " + std::string(minimizedArgument) : std::string()) +
           "\nTerminal=false\nX-GNOME-Autostart-enabled=true\nX-Ventaro-Label=" + loginItemLabel +
           "\n";
}

} // namespace ventaro
