#include "ControlWatcher.h"
#include "DesktopAppearance.h"
#include "DesktopIntegration.h"
#include "HelperClient.h"
#include "Platform.h"
#include "SMCService.h"
#include "SignalWatch.h"
#include "SingleInstance.h"
#include "StartArguments.h"
#include "SystemHardwareInspector.h"
#include "ThreadTaskRunner.h"
#include "UserSession.h"
#include "VentaroApp.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QSocketNotifier>
#include <QTranslator>
#include <QtPlugin>
#include <cstdlib>
#include <iostream>

Q_IMPORT_PLUGIN(Ventaro_StylePlugin)
Q_IMPORT_PLUGIN(Ventaro_ViewsPlugin)

namespace ventaro {

namespace {

/// What the program says about the machine; empty on one like it should be.
QString machineNote(MachineKind kind) {
    QString noSmc = QStringLiteral("Kein AppleSMC gefunden");
    switch (kind) {
    case MachineKind::simulated:
        return QStringLiteral("Simuliertes MacBook Pro");
    case MachineKind::none:
        return noSmc;
    case MachineKind::real:
        break;
    }
    try {
        SMCService::shared().open();
        return {};
    } catch (const std::exception&) {
        return noSmc;
    }
}

/// What the desktop knows the program by, its font and the language of the toolkit's texts. Its
/// name for people is not set: Qt would add it to the title of every window.
void applyIdentityAndLook(QTranslator& translator) {
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setDesktopFileName(QStringLiteral("com.ventaro.app"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/ventaro/com.ventaro.app.svg")));
    const QString family = QStringLiteral("Inter");
    if (QFontDatabase::hasFamily(family)) {
        QFont font = QApplication::font();
        font.setFamily(family);
        QApplication::setFont(font);
    }
    if (translator.load(QStringLiteral("qtbase_de"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&translator);
    }
}

int runFirst(const StopSignals& signals, SingleInstance& instance,
             const DesktopFactory& makeDesktop) {
    QTranslator translator;
    applyIdentityAndLook(translator);
    const QStringList arguments = QApplication::arguments();
    for (const QString& argument : unknownArguments(arguments)) {
        std::cerr << "Ventaro: the argument \"" << argument.toStdString() << "\" is ignored\n";
    }
    static auto& tasks = *new ThreadTaskRunner; // its threads may outlive this function
    Platform& platform = Platform::current();
    const auto desktop = makeDesktop();
    const DesktopAppearance appearance(*desktop);
    VentaroApp app(
        {SMCService::shared(), HelperClient::shared(), SystemHardwareInspector::shared(),
         platform.machineRoot, *platform.session, tasks, "Ventaro", watcherProgram()},
        *desktop,
        {arguments, {machineNote(platform.machineKind), platform.session->windowSizeFile}});
    QSocketNotifier stop(signals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, &app, [&] {
        signals.takeInterrupt();
        app.quit();
    });
    QObject::connect(&instance, &SingleInstance::reopenRequested, &app, &VentaroApp::reopen);
    instance.listen();
    return app.run();
}

} // namespace

int runVentaroApp(int& argc, char** argv, const DesktopFactory& makeDesktop) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const bool isMinimized = AppDelegate::isLaunchedMinimized(arguments);
    const StopSignals signals;
    SingleInstance instance(Platform::current().machineRoot);
    if (instance.claim(isMinimized
                           ? SingleInstance::Request::nothing
                           : SingleInstance::Request::reopen) == SingleInstance::Role::second) {
        std::cout << (isMinimized ? "Ventaro is running already.\n"
                                  : "Ventaro is running already; it shows its window.\n");
        return EXIT_SUCCESS;
    }
    const QApplication application(argc, argv);
    return runFirst(signals, instance, makeDesktop);
}

} // namespace ventaro
