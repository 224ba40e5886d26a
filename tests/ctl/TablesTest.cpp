#include "Tables.h"

#include "InProcessIOKit.h"
#include "JsonObject.h"
#include "SMCService.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace ventaro {
namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(TextWidths, CountCharactersNotBytes) {
    EXPECT_EQ(displayWidth("Lüfter °C"), 9);
    const std::pair<int, const char*> rows[] = {{8, "Lüfter  "}, {6, "Lüfter"}, {5, "Lüft…"},
                                                {2, "L…"},       {1, "L"},      {0, ""}};
    for (const auto& [width, text] : rows) {
        EXPECT_EQ(fitted("Lüfter", width), text);
    }
    EXPECT_EQ(rightAligned("5 °C", 6), "  5 °C");
    EXPECT_EQ(rightAligned("5 °C", 2), "5 °C");
}

TEST(Tables, Fans) {
    const std::vector<FanReading> fans{
        {0, "Linker Lüfter (CPU)", 3726.9, 4000, 1836, 5616, FanMode::forced},
        {1, "Rechter Lüfter (GPU)", std::nan(""), 1700, 1700, 5200, FanMode::automatic}};
    EXPECT_EQ(fanTable(fans),
              "Fan  Name                            RPM Target    Min    Max   Load  Mode\n"
              "0    Linker Lüfter (CPU)            3726   4000   1836   5616   50 %  forced\n"
              "1    Rechter Lüfter (GPU)             --   1700   1700   5200   -- %  automatic\n");
}

TEST(WatchView, FitsEveryTerminal) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, false);
    SMCService service(ioKit);
    const Telemetry telemetry{service.readFans(), service.readSensors(), ""};
    constexpr int allLines = 41 + 6; // sensors and group titles
    const std::string hint = "advice\n" + std::string(69, 'x');
    for (const auto& [columns, rows] :
         {std::pair{80, 24}, {120, 40}, {200, 20}, {40, 100}, {40, 10}, {66, 24}, {30, 12}}) {
        const TerminalStyle style{false, columns, rows};
        const auto lines =
            linesOf(watchFrame(telemetry, MachineKind::simulated, "12:00:00", hint, style));
        int taken = 0;
        int shown = 0;
        int hidden = 0;
        for (const std::string& line : lines) {
            taken += std::max(1, (displayWidth(line) + columns - 1) / columns);
            EXPECT_TRUE(displayWidth(line) <= columns || line.starts_with("xxx")) << line;
            if (line.starts_with("…")) {
                hidden = std::stoi(line.substr(line.find(' ')));
            }
            for (const char* unit : {" °C", " W"}) {
                for (std::size_t at = 0; (at = line.find(unit, at)) != std::string::npos; ++at) {
                    ++shown;
                }
            }
        }
        EXPECT_LE(taken, rows) << columns << "x" << rows;
        EXPECT_EQ(hidden == 0, shown >= 41) << columns << "x" << rows;
        EXPECT_LT(hidden, allLines);
        const bool isRoomy = rows >= 20;
        EXPECT_EQ(lines.back().starts_with("xxx"), isRoomy) << columns << "x" << rows;
    }
}

TEST(WatchView, ColoursFollowTheBands) {
    const TerminalStyle style{true, 100, 40};
    const std::vector<SensorReading> sensors{{"TCXC", "CPU", SensorCategory::cpu, 85, "°C"},
                                             {"PSTR", "Power", SensorCategory::power, 85, "W"}};
    const std::string table = sensorTable(sensors, style);
    EXPECT_NE(table.find("\x1b[31m   85.0 °C\x1b[0m"), std::string::npos);
    EXPECT_NE(table.find("    85.0 W\n"), std::string::npos) << "power has no band";
    EXPECT_EQ(sensorTable(sensors, {false, 100, 40}).find('\x1b'), std::string::npos);
}

TEST(WatchView, SaysWhatMachineThisIs) {
    EXPECT_NE(watchTitle(MachineKind::simulated).find("simulated"), std::string::npos);
    EXPECT_EQ(watchTitle(MachineKind::none), "Ventaro, no SMC here");
    const Telemetry failed{{}, {}, "nicht gefunden"};
    const std::string frame = watchFrame(failed, MachineKind::real, "t", "", {});
    EXPECT_NE(frame.find("nicht gefunden"), std::string::npos);
    EXPECT_EQ(frame.find("RPM"), std::string::npos) << "no invented fans";
}

TEST(WatchView, APlainLinePerLook) {
    const Telemetry telemetry{{{0, "", 2157.9, 2200, 1836, 5616, FanMode::automatic}},
                              {{"TCXC", "", SensorCategory::cpu, 63.25, "°C"}},
                              ""};
    EXPECT_EQ(watchLine(telemetry, "12:00:00"), "12:00:00  CPU 63.2 °C  GPU 0.0 °C  Power 0.0 W  "
                                                "Fan 0 2157 RPM (automatic, target 2200)");
}

} // namespace
} // namespace ventaro
