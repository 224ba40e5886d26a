#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QUrl>

namespace ventaro {

/// Asks for the file of a curve. Does not hold up the program while it is open: the fans are
/// watched on. Main thread only.
class CurveFileDialog : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    Q_INVOKABLE void chooseImport();
    Q_INVOKABLE void chooseExport();

Q_SIGNALS:
    void importChosen(const QUrl& file);
    void exportChosen(const QUrl& file);
};

} // namespace ventaro
