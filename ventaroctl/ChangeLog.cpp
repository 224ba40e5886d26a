#include "ChangeLog.h"

#include "FileDescriptor.h"
#include "NumberFormat.h"
#include "Terminal.h"

#include <unistd.h>

#include <QCoreApplication>
#include <cmath>

namespace ventaro {

namespace {

JsonObjectWriter event(const char* name) { return JsonObjectWriter().string("event", name); }

/// JSON has no numbers that are not finite: such a member is left out.
void addNumber(JsonObjectWriter& object, const char* member, double value) {
    if (std::isfinite(value)) {
        object.number(member, value);
    }
}

} // namespace

ChangeLog::ChangeLog(FanControllerViewModel& controller, bool json)
    : controller_(controller), json_(json) {
    using Controller = FanControllerViewModel;
    on(&Controller::lastAppliedRPMsChanged, &ChangeLog::targets);
    on(&Controller::statusMessageChanged, &ChangeLog::status);
    on(&Controller::isHelperInstalledChanged, &ChangeLog::helper);
    on(&Controller::competingProcessDetectedChanged, &ChangeLog::competitor);
    on(&Controller::tickCountChanged, &ChangeLog::reader);
}

void ChangeLog::on(void (FanControllerViewModel::*changed)(), void (ChangeLog::*print)()) {
    QObject::connect(&controller_, changed, &context_, [this, print] { (this->*print)(); });
}

void ChangeLog::line(const JsonObjectWriter& object, const std::string& text) const {
    const std::string line = (json_ ? object.text() : timeOfDay() + "  " + text) + '\n';
    if (canWrite(STDOUT_FILENO) && ::write(STDOUT_FILENO, line.data(), line.size()) < 0) {
        QCoreApplication::quit();
    }
}

void ChangeLog::targets() {
    const auto& rpm = controller_.lastAppliedRPMs();
    if (rpm.size() < 2 || rpm == printedTargets_) {
        return;
    }
    printedTargets_ = rpm;
    auto object = event("request");
    std::string text;
    if (controller_.activeProfile() == ControlProfile::smartCurve) {
        const double celsius = controller_.currentSourceTemperature();
        const double percent = controller_.evaluateCurvePercent(celsius);
        addNumber(object, "temperature", celsius);
        addNumber(object, "percent", percent);
        text = formatFixed(celsius, 1) + " °C, " + formatFixed(percent, 0) + " %: ";
    }
    addNumber(object, "fan0", rpm.at(0));
    addNumber(object, "fan1", rpm.at(1));
    line(object, text + "asking for left " + formatWhole(rpm.at(0)) + " RPM, right " +
                     formatWhole(rpm.at(1)) + " RPM");
}

void ChangeLog::status() {
    if (const auto& message = controller_.statusMessage()) {
        const bool isMissing = controller_.isErrorStatus() && !controller_.isHelperInstalled();
        line(event("status").string("message", *message),
             *message + (isMissing ? " (ventaroctl install)" : ""));
    }
}

void ChangeLog::helper() {
    const bool answers = controller_.isHelperInstalled();
    line(event("helper").boolean("answers", answers),
         answers ? "The helper answers." : "The helper does not answer.");
}

void ChangeLog::competitor() {
    const bool isRunning = controller_.competingProcessDetected();
    line(event("competitor").boolean("running", isRunning),
         isRunning ? "Another fan control program is running; the two will disturb each other."
                   : "The other fan control program has ended.");
}

void ChangeLog::reader() {
    if (isReaderGone(STDOUT_FILENO)) {
        QCoreApplication::quit();
    }
}

} // namespace ventaro
