#include "CurveFileDialog.h"

#include <QDir>
#include <QStandardPaths>

namespace ventaro {

namespace {

QFileDialog* makeDialog(const QString& title) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    auto* dialog =
        new QFileDialog(nullptr, title, QDir(documents).exists() ? documents : QDir::homePath(),
                        QStringLiteral("Temperatur-Kurven (*.json)"));
    dialog->setDefaultSuffix(QStringLiteral("json"));
    return dialog;
}

} // namespace

CurveFileDialog::~CurveFileDialog() { delete dialog_; }

void CurveFileDialog::open(QFileDialog* dialog, QWindow* window, Chosen chosen) {
    delete dialog_;
    dialog_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // Not `urlSelected`: of Qt's dialogs only the desktop's own ones tell it.
    connect(dialog, &QDialog::accepted, this, [=, this] {
        const QList<QUrl> files = dialog->selectedUrls();
        if (!files.isEmpty()) {
            Q_EMIT(this->*chosen)(files.front());
        }
    });
    dialog->winId(); // makes the window that belongs to the other one
    dialog->windowHandle()->setTransientParent(window);
    connect(window, &QWindow::visibleChanged, dialog, [dialog](bool isVisible) {
        if (!isVisible) {
            dialog->reject();
        }
    });
    dialog->open();
}

void CurveFileDialog::chooseImport(QWindow* window) {
    QFileDialog* dialog = makeDialog(QStringLiteral("Temperatur-Kurve importieren"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    open(dialog, window, &CurveFileDialog::importChosen);
}

void CurveFileDialog::chooseExport(QWindow* window) {
    QFileDialog* dialog = makeDialog(QStringLiteral("Temperatur-Kurve exportieren"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(QStringLiteral("Temperatur-Kurve.json"));
    open(dialog, window, &CurveFileDialog::exportChosen);
}

} // namespace ventaro
