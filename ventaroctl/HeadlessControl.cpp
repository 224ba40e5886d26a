#include "HeadlessControl.h"

#include "FanControllerViewModel.h"
#include "JsonObject.h"
#include "NumberFormat.h"
#include "StopSignals.h"
#include "Tables.h"
#include "ThreadTaskRunner.h"
#include "TransientDefaults.h"
#include "Watch.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <thread>

namespace ventaro {

namespace {

/// Without views nobody looks at the inventory.
class NoInspector final : public HardwareInspector {
public:
    std::vector<HardwareSectionData> loadAllHardwareSections() override { return {}; }
};

/// Prints a line for whatever changes in a controller, and ends the event loop once nobody can
/// read the lines.
class ChangeLog {
public:
    ChangeLog(const FanControllerViewModel& controller, bool json, std::ostream& out)
        : controller_(controller), json_(json), out_(out) {
        using Controller = FanControllerViewModel;
        on(&Controller::lastAppliedRPMsChanged, &ChangeLog::targets);
        on(&Controller::statusMessageChanged, &ChangeLog::status);
        on(&Controller::isHelperInstalledChanged, &ChangeLog::helper);
        on(&Controller::competingProcessDetectedChanged, &ChangeLog::competitor);
    }

    void line(const JsonObjectWriter& object, const std::string& text) const {
        out_ << (json_ ? object.text() : timeOfDay() + "  " + text) << std::endl;
        if (!out_) {
            QCoreApplication::quit();
        }
    }

private:
    void on(void (FanControllerViewModel::*changed)(), void (ChangeLog::*print)() const) {
        QObject::connect(&controller_, changed, &controller_, [this, print] { (this->*print)(); });
    }

    static JsonObjectWriter event(const char* name) {
        return JsonObjectWriter().string("event", name);
    }

    void targets() const {
        const auto& rpm = controller_.lastAppliedRPMs();
        if (rpm.size() < 2) {
            return;
        }
        auto object = event("targets");
        std::string text;
        if (controller_.activeProfile() == ControlProfile::smartCurve) {
            const double celsius = controller_.currentSourceTemperature();
            const double percent = controller_.evaluateCurvePercent(celsius);
            object.number("temperature", celsius).number("percent", percent);
            text = formatFixed(celsius, 1) + " °C, " + formatFixed(percent, 0) + " %: ";
        }
        object.number("fan0", rpm.at(0)).number("fan1", rpm.at(1));
        line(object, text + "left " + formatWhole(rpm.at(0)) + " RPM, right " +
                         formatWhole(rpm.at(1)) + " RPM");
    }
    void status() const {
        const auto& message = controller_.statusMessage();
        if (message) {
            line(event("status").string("message", *message), *message);
        }
    }
    void helper() const {
        const bool answers = controller_.isHelperInstalled();
        line(event("helper").boolean("answers", answers),
             answers ? "The helper answers." : "The helper does not answer.");
    }
    void competitor() const {
        const bool isRunning = controller_.competingProcessDetected();
        line(event("competitor").boolean("running", isRunning),
             isRunning ? "Another fan control program is running; the two will disturb each other."
                       : "The other fan control program has ended.");
    }

    const FanControllerViewModel& controller_;
    const bool json_;
    std::ostream& out_;
};

/// Applies the profile once the temperatures are known, and again once a helper that was missing
/// answers: there is nobody to press the button.
class ProfileKeeper : public QObject {
public:
    ProfileKeeper(FanControllerViewModel& controller, ControlProfile profile)
        : controller_(controller), profile_(profile) {
        using Controller = FanControllerViewModel;
        connect(&controller_, &Controller::historyChanged, this,
                [this] { applyIf(!std::exchange(hasBegun_, true)); });
        connect(&controller_, &Controller::isErrorStatusChanged, this,
                [this] { isMissed_ = isMissed_ || controller_.isErrorStatus(); });
        connect(&controller_, &Controller::isHelperInstalledChanged, this, [this] {
            const bool wasMissed = std::exchange(isMissed_, !controller_.isHelperInstalled());
            applyIf(wasMissed && !isMissed_);
        });
    }

private:
    void applyIf(bool isDue) {
        if (isDue) {
            controller_.selectProfile(profile_);
        }
    }

    FanControllerViewModel& controller_;
    const ControlProfile profile_;
    bool hasBegun_ = false;
    bool isMissed_ = false; ///< the helper has missed a request
};

bool areFansAutomatic(SMCService& smc) {
    const int count = smc.fanCount();
    for (int fan = 0; fan < count; ++fan) {
        if (smc.readFanForced(fan).value_or(true)) {
            return false;
        }
    }
    return true;
}

bool acceptsReset(const HelperClient& helper) {
    try {
        return helper.sendSocketRequest({HelperAction::resetAllAuto, {}, {}}).success;
    } catch (const std::exception&) {
        return false;
    }
}

/// Goes on until the fans are free, the time is over, or another signal comes.
bool handFansBack(SMCService& smc, const HelperClient& helper, std::chrono::milliseconds patience,
                  const StopSignals& signals) {
    constexpr std::chrono::milliseconds pause(200);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!areFansAutomatic(smc) && !acceptsReset(helper)) {
        if (std::chrono::steady_clock::now() >= end || signals.take()) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

void adopt(FanControllerViewModel& controller, const SavedSettings& saved,
           const HeadlessOptions& options) {
    controller.setResetToAutoOnQuit(true);
    // Not those of the fans at this moment: nobody is there to move a slider.
    controller.setManualRPMFan0(saved.manualRPMFan0);
    controller.setManualRPMFan1(saved.manualRPMFan1);
    controller.setCurvePoints(options.curve.value_or(saved.curvePoints));
    controller.setCurveSensorSource(options.source.value_or(saved.curveSensorSource));
}

} // namespace

void runHeadless(Commands& commands, SMCService& smc, const HelperClient& helper,
                 Platform& platform, const HeadlessOptions& options, std::ostream& out) {
    commands.requireSmc();
    const StopSignals signals;
    std::signal(SIGPIPE, SIG_IGN);
    static std::array<char, 11> name{"ventaroctl"};
    static std::array<char*, 2> arguments{name.data(), nullptr};
    static int argumentCount = 1;
    QCoreApplication application(argumentCount, arguments.data());
    const QSocketNotifier stop(signals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, &application, &QCoreApplication::quit);

    // A task that is still running when the process ends finds them in their place.
    static auto& tasks = *new ThreadTaskRunner;
    static NoInspector inspector;
    UserSession& session = *platform.session;
    const SavedSettings saved = loadedSettings(*session.defaults);
    session.defaults = std::make_unique<TransientDefaults>(std::move(session.defaults));
    FanControllerViewModel controller(
        {smc, helper, inspector, platform.machineRoot, session, tasks});
    adopt(controller, saved, options);
    const ChangeLog log(controller, options.json, out);
    const ProfileKeeper keeper(controller, options.profile);
    log.line(
        JsonObjectWriter().string("event", "start").string("profile", rawValue(options.profile)),
        watchTitle(platform.machineKind) + ", profile " + std::string(rawValue(options.profile)) +
            ". Ctrl-C hands the fans back.");

    if (out) {
        QCoreApplication::exec();
    }
    signals.take();
    controller.shutdown();
    const bool isFree = handFansBack(smc, helper, options.patience, signals);
    if (!isFree) {
        throw CommandError("the fans are still forced, for the helper does not answer. Free them "
                           "with \"ventaroctl auto\" once it does, or as root with "
                           "\"VentaroHelper --reset-all\".");
    }
    log.line(JsonObjectWriter().string("event", "end"), "The fans are automatic again.");
}

} // namespace ventaro
