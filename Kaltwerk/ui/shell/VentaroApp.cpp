#include "VentaroApp.h"

#include "Appearance.h"
#include "FanControllerViewModel.h"
#include "HelperClient.h"
#include "Platform.h"
#include "ThreadTaskRunner.h"

#include <QApplication>
#include <QFont>
#include <QQuickView>
#include <QtPlugin>

Q_IMPORT_PLUGIN(Ventaro_StylePlugin)
Q_IMPORT_PLUGIN(Ventaro_ViewsPlugin)

namespace ventaro {

int runVentaroApp(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Inter")));
    static auto& tasks = *new ThreadTaskRunner;
    Platform& platform = Platform::current();
    FanControllerViewModel controller({SMCService::shared(), HelperClient::shared(),
                                       SystemHardwareInspector::shared(), platform.machineRoot,
                                       *platform.session, tasks});
    QQuickView view;
    view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    view.setInitialProperties({{QStringLiteral("viewModel"), QVariant::fromValue(&controller)}});
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ventaro/Views/DashboardView.qml")));
    view.resize(980, 680);
    view.show();
    const int result = QApplication::exec();
    controller.shutdown();
    return result;
}

} // namespace ventaro
