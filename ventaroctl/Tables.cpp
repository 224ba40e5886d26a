#include "Tables.h"

#include "JsonObject.h"
#include "NumberFormat.h"
#include "TelemetrySummary.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace ventaro {

namespace {

constexpr int nameWidth = 28;
constexpr int speedWidth = 7;

std::string valueText(const SensorReading& sensor) {
    return formatFixed(sensor.value, 1) + " " + sensor.unit;
}

std::string coloredValue(const SensorReading& sensor, int width, const TerminalStyle& style) {
    const std::string text = rightAligned(valueText(sensor), width);
    return sensor.category == SensorCategory::power
               ? text
               : colored(text, temperatureBand(sensor.value), style);
}

const char* modeText(FanMode mode) { return mode == FanMode::forced ? "forced" : "automatic"; }

std::string percentText(const FanReading& fan) {
    return formatRounded(fan.percentage() * 100) + " %";
}

std::string bar(double share, int width) {
    const int full = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * width));
    std::string text;
    for (int cell = 0; cell < width; ++cell) {
        text += cell < full ? "█" : "░";
    }
    return text;
}

/// A JSON array of what `encode` makes of each item.
template<typename Items, typename Encode>
std::string jsonArray(const Items& items, Encode encode) {
    std::string text = "[";
    for (const auto& item : items) {
        text += (text.size() > 1 ? "," : "") + encode(item);
    }
    return text + "]";
}

/// The sensors as lines of one column: a heading for each group, then its sensors.
std::vector<std::string> sensorLines(const std::vector<SensorReading>& sensors, int width,
                                     const TerminalStyle& style) {
    constexpr int valueWidth = 9;
    std::vector<std::string> lines;
    for (const SensorCategory category : allSensorCategories) {
        bool isFirst = true;
        for (const SensorReading& sensor : sensors) {
            if (sensor.category != category) {
                continue;
            }
            if (isFirst) {
                lines.push_back(bold(fitted(rawValue(category), width), style));
                isFirst = false;
            }
            lines.push_back(fitted(" " + sensor.name, width - valueWidth) +
                            coloredValue(sensor, valueWidth, style));
        }
    }
    return lines;
}

/// Sets lines in as many columns as fit, top to bottom; what does not fit is counted.
std::string inColumns(const std::vector<std::string>& lines, int columnWidth, int gap, int rows,
                      const TerminalStyle& style) {
    const int total = static_cast<int>(lines.size());
    const int mostColumns = std::max(1, (style.columns + gap) / (columnWidth + gap));
    int height = (total + mostColumns - 1) / mostColumns;
    const bool isCut = height > rows;
    height = std::max(0, isCut ? rows - 1 : height);
    std::string text;
    for (int row = 0; row < height; ++row) {
        for (int index = row; index < std::min(total, height * mostColumns); index += height) {
            text += (index == row ? "" : std::string(static_cast<std::size_t>(gap), ' ')) +
                    lines[static_cast<std::size_t>(index)];
        }
        text += '\n';
    }
    if (isCut) {
        const std::string note = "… " + std::to_string(total - height * mostColumns) +
                                 " more lines in a larger terminal";
        text += dimmed(fitted(note, std::min(displayWidth(note), style.columns)), style) + '\n';
    }
    return text;
}

std::string watchFanLine(const FanReading& fan, const TerminalStyle& style) {
    constexpr int wholeWidth = 66;
    constexpr int withoutBar = 60;
    const std::string speed = rightAligned(formatWhole(fan.currentRPM), speedWidth) + " RPM";
    const std::string name = fitted(fan.name, 21);
    if (style.columns < wholeWidth) {
        return fitted(name + speed, style.columns);
    }
    return name + bar(fan.percentage(), std::min(style.columns - withoutBar, 40)) + speed +
           ", target" + rightAligned(formatWhole(fan.targetRPM), speedWidth - 1) + ", " +
           fitted(modeText(fan.mode), 9);
}

std::string headLine(MachineKind kind, const std::string& time, const TerminalStyle& style) {
    const std::string title = watchTitle(kind);
    const std::string rest = "  " + time + "  Ctrl-C ends";
    return displayWidth(title + rest) <= style.columns ? bold(title, style) + dimmed(rest, style)
                                                       : bold(fitted(title, style.columns), style);
}

std::string summaryLine(const TelemetrySummary& summary, const TerminalStyle& style) {
    constexpr int wholeWidth = 50;
    const auto temperature = [&](double value) {
        return colored(formatFixed(value, 1) + " °C", temperatureBand(value), style);
    };
    const std::string power = "   Power " + formatFixed(summary.systemPower, 1) + " W";
    return "CPU " + temperature(summary.cpuTemperature) + "   GPU " +
           temperature(summary.gpuTemperature) + (style.columns < wholeWidth ? "" : power);
}

/// The rows that a text takes in the terminal, long lines wrapped.
int rowsOf(const std::string& text, int columns) {
    int rows = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        rows += std::max(1, (displayWidth(line) + columns - 1) / columns);
    }
    return rows;
}

} // namespace

std::string fanTable(const std::vector<FanReading>& fans) {
    std::string text = "Fan  " + fitted("Name", nameWidth);
    for (const char* title : {"RPM", "Target", "Min", "Max", "Load"}) {
        text += rightAligned(title, speedWidth);
    }
    text += "  Mode\n";
    for (const FanReading& fan : fans) {
        text += fitted(std::to_string(fan.id), 5) + fitted(fan.name, nameWidth);
        for (const double speed : {fan.currentRPM, fan.targetRPM, fan.minRPM, fan.maxRPM}) {
            text += rightAligned(formatWhole(speed), speedWidth);
        }
        text += rightAligned(percentText(fan), speedWidth) + "  " + modeText(fan.mode) + '\n';
    }
    return text;
}

std::string sensorTable(const std::vector<SensorReading>& sensors, const TerminalStyle& style) {
    constexpr int valueWidth = 10;
    std::string text;
    for (const SensorCategory category : allSensorCategories) {
        std::string group;
        for (const SensorReading& sensor : sensors) {
            if (sensor.category == category) {
                group += "  " + sensor.key + "  " + fitted(sensor.name, nameWidth) +
                         coloredValue(sensor, valueWidth, style) + '\n';
            }
        }
        if (!group.empty()) {
            text += (text.empty() ? "" : "\n") + bold(rawValue(category), style) + '\n' + group;
        }
    }
    return text;
}

std::string watchTitle(MachineKind kind) {
    switch (kind) {
    case MachineKind::simulated:
        return "Ventaro on a simulated MacBook Pro";
    case MachineKind::real:
        return "Ventaro on this MacBook Pro";
    case MachineKind::none:
        break;
    }
    return "Ventaro, no SMC here";
}

std::string watchFrame(const Telemetry& telemetry, MachineKind kind, const std::string& time,
                       const std::string& hint, const TerminalStyle& style) {
    constexpr int gap = 3;
    constexpr int fewestSensorRows = 6; // below that, advice is not worth its place
    const int columnWidth = std::min(38, style.columns);
    std::string text = headLine(kind, time, style) + "\n\n";
    if (!telemetry.failure.empty()) {
        return text + telemetry.failure;
    }
    text += summaryLine(summarize(telemetry.sensors), style) + "\n\n";
    for (const FanReading& fan : telemetry.fans) {
        text += watchFanLine(fan, style) + '\n';
    }
    if (telemetry.fans.empty()) {
        text += "This machine reports no fans.\n";
    }
    text += '\n';
    const int left = style.rows - static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    const int hintRows = hint.empty() ? 0 : 1 + rowsOf(hint, style.columns);
    const bool showsHint = hintRows > 0 && left - hintRows >= fewestSensorRows;
    text += inColumns(sensorLines(telemetry.sensors, columnWidth, style), columnWidth, gap,
                      showsHint ? left - hintRows : left, style);
    if (showsHint) {
        return text + '\n' + dimmed(hint, style);
    }
    text.pop_back(); // a line feed in the last row would scroll
    return text;
}

std::string watchLine(const Telemetry& telemetry, const std::string& time) {
    if (!telemetry.failure.empty()) {
        return time + "  " + telemetry.failure;
    }
    const TelemetrySummary summary = summarize(telemetry.sensors);
    std::string text = time + "  CPU " + formatFixed(summary.cpuTemperature, 1) + " °C  GPU " +
                       formatFixed(summary.gpuTemperature, 1) + " °C  Power " +
                       formatFixed(summary.systemPower, 1) + " W";
    for (const FanReading& fan : telemetry.fans) {
        text += "  Fan " + std::to_string(fan.id) + " " + formatWhole(fan.currentRPM) + " RPM (" +
                modeText(fan.mode) + ", target " + formatWhole(fan.targetRPM) + ")";
    }
    return text;
}

std::string toJsonArray(const std::vector<FanReading>& fans) {
    return jsonArray(fans, [](const FanReading& fan) { return encodeJson(fan); });
}

std::string toJsonArray(const std::vector<SensorReading>& sensors) {
    return jsonArray(sensors, [](const SensorReading& sensor) { return encodeJson(sensor); });
}

namespace {

std::string rowsJson(const HardwareSectionData::Rows& rows) {
    return jsonArray(rows, [](const HardwareSpecItem& row) {
        return JsonObjectWriter().string("label", row.label).string("value", row.value).text();
    });
}

std::string rowsTable(const HardwareSectionData::Rows& rows, const std::string& indent) {
    constexpr int labelWidth = 26;
    std::string text;
    for (const HardwareSpecItem& row : rows) {
        text += indent + fitted(row.label, labelWidth - static_cast<int>(indent.size())) + " " +
                row.value + '\n';
    }
    return text;
}

} // namespace

std::string toJsonArray(const std::vector<HardwareSectionData>& sections) {
    return jsonArray(sections, [](const HardwareSectionData& section) {
        return JsonObjectWriter()
            .string("title", section.title)
            .string("subtitle", section.subtitle)
            .string("icon", section.icon)
            .string("accentColorName", section.accentColorName)
            .raw("specs", rowsJson(section.specs))
            .raw("subCards", jsonArray(section.subCards, rowsJson))
            .text();
    });
}

std::string hardwareTable(const std::vector<HardwareSectionData>& sections) {
    std::string text;
    for (const HardwareSectionData& section : sections) {
        text += (text.empty() ? "" : "\n") + section.title + "\n" + section.subtitle + "\n" +
                rowsTable(section.specs, "  ");
        for (const auto& card : section.subCards) {
            text += "\n" + rowsTable(card, "    ");
        }
    }
    return text;
}

} // namespace ventaro
