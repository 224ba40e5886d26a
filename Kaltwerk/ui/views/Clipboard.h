#pragma once

#include <QClipboard>
#include <QGuiApplication>
#include <QObject>
#include <QQmlEngine>
#include <QString>

namespace ventaro {

/// The desktop's clipboard, for views to put text into. Main thread only.
class Clipboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE static void copy(const QString& text) {
        QGuiApplication::clipboard()->setText(text);
    }
};

} // namespace ventaro
