#pragma once

#include <QObject>
#include <QQmlEngine>

namespace ventaro {

/// Tells the engine of the tests where our own modules are.
class ImportPath : public QObject {
    Q_OBJECT
public:
    Q_SLOT void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    }
};

} // namespace ventaro
