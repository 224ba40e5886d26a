#pragma once

#include "HardwareSections.h"
#include "Platform.h"
#include "TelemetryRecords.h"
#include "Terminal.h"

#include <string>
#include <vector>

namespace ventaro {

/// One look at the machine.
struct Telemetry {
    std::vector<FanReading> fans;
    std::vector<SensorReading> sensors;
    std::string failure; ///< why there are no readings; empty if there are
};

std::string fanTable(const std::vector<FanReading>& fans);
std::string hardwareTable(const std::vector<HardwareSectionData>& sections);
std::string sensorTable(const std::vector<SensorReading>& sensors, const TerminalStyle& style);

/// What heads the live view: the program, and what kind of machine this is.
std::string watchTitle(MachineKind kind);
/// The live view, cut to the terminal's size. `hint` stands below it; empty for none.
std::string watchFrame(const Telemetry& telemetry, MachineKind kind, const std::string& time,
                       const std::string& hint, const TerminalStyle& style);
/// The live view for a program or a log: one line.
std::string watchLine(const Telemetry& telemetry, const std::string& time);

/// JSON arrays of the records; they throw EncodingError for a number that is not finite.
std::string toJsonArray(const std::vector<FanReading>& fans);
std::string toJsonArray(const std::vector<SensorReading>& sensors);
/// With the members of the section but its identifiers.
std::string toJsonArray(const std::vector<HardwareSectionData>& sections);

} // namespace ventaro
