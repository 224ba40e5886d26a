#pragma once

#include <QQmlEngine>
#include <QQuickView>
#include <QString>
#include <QVariantMap>
#include <memory>

namespace ventaro {

/// A window with one of the views in it. All scenes of the process share one QML engine, which goes
/// with the last of them. Main thread only.
class QmlScene {
public:
    /// `view`: the name of a component of the views' module. The window is not shown.
    QmlScene(const QString& view, const QVariantMap& initialProperties,
             QQuickView::ResizeMode resizeMode);
    /// Gives the memory back to the system.
    ~QmlScene();
    QmlScene(const QmlScene&) = delete;
    QmlScene& operator=(const QmlScene&) = delete;

    QQuickView& window() { return *window_; }
    const QQuickView& window() const { return *window_; }

private:
    std::shared_ptr<QQmlEngine> engine_;
    std::unique_ptr<QQuickView> window_;
};

} // namespace ventaro
