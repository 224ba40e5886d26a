#pragma once

#include <QGuiApplication>
#include <QObject>
#include <QQmlEngine>

namespace ventaro {

/// The buttons of the mouse, wherever it is. Main thread only.
class MouseButtons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Whether any is held down.
    Q_INVOKABLE static bool arePressed() { return QGuiApplication::mouseButtons() != Qt::NoButton; }
};

} // namespace ventaro
