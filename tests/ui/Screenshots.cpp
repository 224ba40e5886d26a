#include "Appearance.h"
#include "TestBench.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QQuickView>
#include <QtPlugin>
#include <array>
#include <cmath>
#include <iostream>

Q_IMPORT_PLUGIN(Ventaro_StylePlugin)
Q_IMPORT_PLUGIN(Ventaro_ViewsPlugin)

namespace {

using namespace ventaro;

constexpr std::array<QSize, 3> sizes{QSize(620, 480), QSize(980, 680), QSize(1440, 900)};
constexpr std::array<const char*, 5> tabs{"overview", "curve", "sensors", "hardware", "helper"};

/// Two minutes in which a load comes and goes.
void liveThroughALoad(TestBench& bench) {
    constexpr int samples = 60;
    double heat = 0;
    for (int sample = 0; sample < samples; ++sample) {
        const double load = sample >= 20 && sample < 38 ? 1 : sample < 20 ? 0 : 0.35;
        heat += (load - heat) * (load > heat ? 0.35 : 0.22);
        const double noise = std::sin(sample * 1.7) * 0.7;
        const double slow = std::max(0.0, heat - 0.1 * std::cos(sample * 0.3));
        bench.setTemperatures(46 + 42 * heat + noise, 44 + 15 * slow + noise / 2, 12 + 55 * heat);
        bench.setFan(0, 1840 + 1700 * slow, 1840 + 1700 * slow, false);
        bench.setFan(1, 1705 + 1600 * slow, 1705 + 1600 * slow, false);
        bench.tick();
    }
    bench.setTemperatures(63.4, 52.1, 31.8);
    bench.setFan(0, 2157, 2150, false);
    bench.setFan(1, 2043, 2040, false);
    bench.tick();
}

void applyProfile(TestBench& bench, ControlProfile profile) {
    bench.viewModel()->selectProfile(profile);
    bench.runTasks();
    bench.viewModel()->dismissStatusMessage();
}

/// Has a view drawn as it would be on the screen, and kept as a picture.
class Camera {
public:
    explicit Camera(const QDir& folder) : folder_(folder) {
        window_.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        window_.setColor(Qt::transparent); // around the corners of the popover
        window_.setResizeMode(QQuickView::SizeRootObjectToView);
    }
    QQuickItem* load(TestBench& bench, const char* view) {
        window_.setInitialProperties(
            {{QStringLiteral("viewModel"), QVariant::fromValue(bench.viewModel())},
             {QStringLiteral("machineNote"),
              view == std::string("DashboardView") ? "Simuliertes MacBook Pro" : ""}});
        window_.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ventaro/Views/%1.qml").arg(view)));
        window_.show();
        return window_.rootObject();
    }
    bool take(const QString& name, const QSize& size) {
        window_.resize(size);
        // Banners slide in, and grids find their place in a second pass.
        QElapsedTimer shown;
        for (shown.start(); shown.elapsed() < 300;) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            // Outside an event loop nothing else deletes the tabs that have gone.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        const QString scale = window_.effectiveDevicePixelRatio() > 1 ? "@2x" : "";
        return window_.grabWindow().save(folder_.filePath(name + scale + ".png"));
    }

private:
    QDir folder_;
    QQuickView window_;
};

QString sized(const char* name, const QSize& size, const char* theme) {
    return QStringLiteral("%1-%2x%3-%4").arg(name).arg(size.width()).arg(size.height()).arg(theme);
}

/// The tabs in what is not their usual state.
bool takeStates(Camera& camera, TestBench& bench, const char* theme) {
    constexpr QSize size = sizes[1];
    const auto tab = [](QQuickItem* dashboard, int index) {
        dashboard->setProperty("selectedTab", index);
    };
    QQuickItem* dashboard = camera.load(bench, "DashboardView");
    tab(dashboard, 2);
    bool isGood = true;
    for (const auto& [name, filter] :
         {std::pair("sensors-filter", "tc0"), std::pair("sensors-nothing", "Wärmepumpe")}) {
        dashboard->setProperty("sensorSearchText", QString::fromUtf8(filter));
        isGood = camera.take(sized(name, size, theme), size) && isGood;
    }
    tab(dashboard, 3);
    bench.runTasks();
    dashboard->setProperty("hidesHardwareIdentifiers", true);
    isGood = camera.take(sized("hardware-masked", size, theme), size) && isGood;
    constexpr int someCardsDown = 600;
    bench.scrollPage(dashboard)->setProperty("contentY", someCardsDown);
    isGood = camera.take(sized("hardware-scrolled", size, theme), size) && isGood;
    TestBench loading;
    tab(camera.load(loading, "DashboardView"), 3);
    isGood = camera.take(sized("hardware-loading", size, theme), size) && isGood;
    bench.setHelperAnswers(false);
    for (const QSize& narrow : {sizes[0], sizes[1]}) {
        tab(camera.load(bench, "DashboardView"), 4);
        isGood = camera.take(sized("helper-missing", narrow, theme), narrow) && isGood;
    }
    bench.setHelperAnswers(true);
    camera.load(bench, "DashboardView");
    return isGood;
}

bool takeAll(const QDir& folder) {
    bool isGood = true;
    for (const char* theme : {"light", "dark"}) {
        Appearance::shared().setDark(theme == std::string("dark"));
        TestBench bench;
        bench.setProfile();
        liveThroughALoad(bench);
        Camera camera(folder);
        QQuickItem* dashboard = camera.load(bench, "DashboardView");
        for (std::size_t tab = 0; tab < tabs.size(); ++tab) {
            dashboard->setProperty("selectedTab", static_cast<int>(tab));
            bench.runTasks();
            for (const QSize& size : sizes) {
                isGood = camera.take(sized(tabs[tab], size, theme), size) && isGood;
            }
        }
        applyProfile(bench, ControlProfile::smartCurve);
        dashboard->setProperty("selectedTab", 1);
        isGood = camera.take(sized("curve", sizes[2], theme), sizes[2]) && isGood;
        applyProfile(bench, ControlProfile::systemAuto);
        isGood = takeStates(camera, bench, theme) && isGood;
        camera.load(bench, "MenuBarPopoverView");
        isGood = camera.take(QStringLiteral("popover-%1").arg(theme), {330, 484}) && isGood;
        bench.setHelperAnswers(false);
        isGood = camera.take(QStringLiteral("popover-helper-%1").arg(theme), {330, 530}) && isGood;
        bench.setConflict(true);
        bench.viewModel()->selectProfile(ControlProfile::turbo); // fails without a helper
        bench.runTasks();
        camera.load(bench, "DashboardView");
        for (const QSize& size : sizes) {
            isGood = camera.take(sized("banners", size, theme), size) && isGood;
        }
    }
    return isGood;
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Inter")));
    const QDir folder(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (argc != 2 || !folder.mkpath(QStringLiteral("."))) {
        std::cerr << "Usage: screenshots FOLDER\n";
        return EXIT_FAILURE;
    }
    return takeAll(folder) ? EXIT_SUCCESS : EXIT_FAILURE;
}
