#include "HeadlessControl.h"

#include "ChangeLog.h"
#include "ControlWatcher.h"
#include "FanControllerViewModel.h"
#include "SavedSettings.h"
#include "SignalWatch.h"
#include "Tables.h"
#include "ThreadTaskRunner.h"
#include "TransientDefaults.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <utility>

namespace ventaro {

namespace {

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
                 Platform& platform, const HeadlessOptions& options) {
    commands.requireSmc();
    const StopSignals signals;
    std::signal(SIGPIPE, SIG_IGN);
    static std::array<char, 11> name{"ventaroctl"};
    static std::array<char*, 2> arguments{name.data(), nullptr};
    static int argumentCount = 1;
    const QCoreApplication application(argumentCount, arguments.data());
    const QSocketNotifier stop(signals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, &application, &QCoreApplication::quit);

    // A task that is still running when the process ends finds them in their place.
    static auto& tasks = *new ThreadTaskRunner;
    UserSession& session = *platform.session;
    const SavedSettings saved = loadedSettings(*session.defaults);
    session.defaults = std::make_unique<TransientDefaults>(std::move(session.defaults));
    FanControllerViewModel controller({smc, helper, SystemHardwareInspector::shared(),
                                       platform.machineRoot, session, tasks, "ventaroctl run",
                                       watcherProgram()});
    adopt(controller, saved, options);
    const ChangeLog log(controller, options.json);
    log.line(
        JsonObjectWriter().string("event", "start").string("profile", rawValue(options.profile)),
        watchTitle(platform.machineKind) + ", profile " + std::string(rawValue(options.profile)) +
            ". Ctrl-C hands the fans back.");
    bool isControlLost = false;
    QObject::connect(&controller, &FanControllerViewModel::controlLost, &application, [&] {
        isControlLost = true;
        QCoreApplication::quit();
    });
    controller.selectProfile(options.profile);

    QCoreApplication::exec();
    signals.takeInterrupt();
    if (isControlLost) {
        controller.setResetToAutoOnQuit(false);
        controller.shutdown();
        return;
    }
    const auto end = std::chrono::steady_clock::now() + options.patience;
    bool hasSaid = false;
    const auto failure = controller.shutdown([&](const std::string& reason) {
        if (!std::exchange(hasSaid, true)) {
            log.line(JsonObjectWriter().string("event", "trying").string("message", reason),
                     reason + " Trying again to free the fans; Ctrl-C gives up.");
        }
        return std::chrono::steady_clock::now() < end && !signals.takeInterrupt();
    });
    if (failure) {
        throw CommandError("the fans are still forced: " + *failure +
                           " Free them with \"ventaroctl auto\", or as root with \"" +
                           HelperConstants::helperBinaryInstallPath + " --reset-all\".");
    }
    log.line(JsonObjectWriter().string("event", "end"), "The fans are automatic again.");
}

} // namespace ventaro
