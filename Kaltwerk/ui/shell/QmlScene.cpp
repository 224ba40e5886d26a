#include "QmlScene.h"

#include "SystemCalls.h"

#include <QDir>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace ventaro {

namespace {

/// Without a GPU the scene graph's own renderer is lighter and quicker than OpenGL in software.
void chooseRenderer() {
    const bool isChosenByUser = qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
                                qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    const QDir devices(QStringLiteral("/dev/dri"), QStringLiteral("renderD*"), QDir::NoSort,
                       QDir::System);
    if (!isChosenByUser && devices.isEmpty()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

std::shared_ptr<QQmlEngine> sharedEngine() {
    static std::weak_ptr<QQmlEngine> living;
    auto engine = living.lock();
    if (!engine) {
        [[maybe_unused]] static const bool rendererIsChosen = [] {
            chooseRenderer();
            return true;
        }();
        engine = std::make_shared<QQmlEngine>();
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        living = engine;
    }
    return engine;
}

} // namespace

QmlScene::QmlScene(const QString& view, const QVariantMap& initialProperties,
                   QQuickView::ResizeMode resizeMode)
    : engine_(sharedEngine()), window_(std::make_unique<QQuickView>(engine_.get(), nullptr)) {
    window_->setInitialProperties(initialProperties);
    window_->setResizeMode(resizeMode);
    window_->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ventaro/Views/%1.qml").arg(view)));
}

QmlScene::~QmlScene() {
    window_.reset();
    engine_->collectGarbage();
    engine_.reset();
    releaseFreeMemory();
}

} // namespace ventaro
