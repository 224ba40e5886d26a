#pragma once

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QUrl>
#include <QWindow>

namespace ventaro {

/// Asks for the file of a curve, over a window that waits for the answer. Does not hold up the
/// program while it is open: the fans are watched on. Main thread only.
class CurveFileDialog : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;
    ~CurveFileDialog() override;

    Q_INVOKABLE void chooseImport(QWindow* window);
    Q_INVOKABLE void chooseExport(QWindow* window);

Q_SIGNALS:
    void importChosen(const QUrl& file);
    void exportChosen(const QUrl& file);

private:
    using Chosen = void (CurveFileDialog::*)(const QUrl& file);

    void open(QFileDialog* dialog, QWindow* window, Chosen chosen);

    QPointer<QFileDialog> dialog_;
};

} // namespace ventaro
