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

/// Has views of a theme drawn as they would be on the screen, and kept as pictures.
struct Camera : QQuickView {
    Camera(const QDir& where, const char* look) : folder(where), theme(look) {
        Appearance::shared().setDark(theme == "dark");
        engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        setColor(Qt::transparent); // around the corners of the popover
        setResizeMode(QQuickView::SizeRootObjectToView);
    }
    void load(TestBench& bench, const QString& view, int tab = 0) {
        const bool isDashboard = view == "DashboardView";
        setInitialProperties(
            {{QStringLiteral("viewModel"), QVariant::fromValue(bench.viewModel())},
             {QStringLiteral("machineNote"), isDashboard ? "Simuliertes MacBook Pro" : ""}});
        setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ventaro/Views/%1.qml").arg(view)));
        show();
        if (tab != 0) {
            rootObject()->setProperty("selectedTab", tab);
        }
    }
    void take(const QString& name, QSize size) {
        resize(size);
        // Banners slide in, and grids find their place in a second pass.
        QElapsedTimer shown;
        for (shown.start(); shown.elapsed() < 300;) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            // Outside an event loop nothing else deletes the tabs that have gone.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        const QString scale = effectiveDevicePixelRatio() > 1 ? "@2x" : "";
        const QString file = QStringLiteral("%1-%2%3.png").arg(name, theme, scale);
        isGood = grabWindow().save(folder.filePath(file)) && isGood;
    }
    void takeSized(const char* name, QSize size) {
        take(QStringLiteral("%1-%2x%3").arg(name).arg(size.width()).arg(size.height()), size);
    }

    const QDir folder;
    const QString theme;
    bool isGood = true; ///< whether all pictures have been kept
};

/// The tabs in what is not their usual state.
void takeStates(Camera& camera, TestBench& bench) {
    constexpr QSize size = sizes[1];
    camera.load(bench, "DashboardView", 2);
    for (const auto& [name, filter] :
         {std::pair("sensors-filter", "tc0"), std::pair("sensors-nothing", "Wärmepumpe")}) {
        camera.rootObject()->setProperty("sensorSearchText", QString::fromUtf8(filter));
        camera.takeSized(name, size);
    }
    camera.rootObject()->setProperty("selectedTab", 3);
    bench.runTasks();
    camera.rootObject()->setProperty("hidesHardwareIdentifiers", true);
    camera.takeSized("hardware-masked", size);
    constexpr int someCardsDown = 600;
    bench.scrollPage(camera.rootObject())->setProperty("contentY", someCardsDown);
    camera.takeSized("hardware-scrolled", size);
    TestBench loading;
    camera.load(loading, "DashboardView", 3);
    camera.takeSized("hardware-loading", size);
    bench.setHelperAnswers(false);
    for (const QSize& narrow : {sizes[0], sizes[1]}) {
        camera.load(bench, "DashboardView", 4);
        camera.takeSized("helper-missing", narrow);
    }
    bench.setHelperAnswers(true);
    camera.load(bench, "DashboardView");
}

bool takeAll(const QDir& folder, const char* theme) {
    TestBench bench;
    bench.setProfile();
    liveThroughALoad(bench);
    Camera camera(folder, theme);
    camera.load(bench, "DashboardView");
    for (std::size_t tab = 0; tab < tabs.size(); ++tab) {
        camera.rootObject()->setProperty("selectedTab", static_cast<int>(tab));
        bench.runTasks();
        for (const QSize& size : sizes) {
            camera.takeSized(tabs[tab], size);
        }
    }
    applyProfile(bench, ControlProfile::smartCurve);
    camera.rootObject()->setProperty("selectedTab", 1);
    camera.takeSized("curve", sizes[2]);
    applyProfile(bench, ControlProfile::systemAuto);
    takeStates(camera, bench);
    camera.load(bench, "MenuBarPopoverView");
    camera.take("popover", {330, 484});
    bench.setHelperAnswers(false);
    camera.take("popover-helper", {330, 530});
    bench.setConflict(true);
    bench.viewModel()->selectProfile(ControlProfile::turbo); // fails without a helper
    bench.runTasks();
    camera.load(bench, "DashboardView");
    for (const QSize& size : sizes) {
        camera.takeSized("banners", size);
    }
    return camera.isGood;
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
    return takeAll(folder, "light") && takeAll(folder, "dark") ? EXIT_SUCCESS : EXIT_FAILURE;
}
