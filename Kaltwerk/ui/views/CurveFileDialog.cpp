#include "CurveFileDialog.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace ventaro {

namespace {

QFileDialog* makeDialog(const QString& title) {
    auto* dialog = new QFileDialog(
        nullptr, title, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
        QStringLiteral("Temperatur-Kurven (*.json)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setDefaultSuffix(QStringLiteral("json"));
    return dialog;
}

} // namespace

void CurveFileDialog::chooseImport() {
    QFileDialog* dialog = makeDialog(QStringLiteral("Temperatur-Kurve importieren"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::urlSelected, this, &CurveFileDialog::importChosen);
    dialog->open();
}

void CurveFileDialog::chooseExport() {
    QFileDialog* dialog = makeDialog(QStringLiteral("Temperatur-Kurve exportieren"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(QStringLiteral("Temperatur-Kurve.json"));
    connect(dialog, &QFileDialog::urlSelected, this, &CurveFileDialog::exportChosen);
    dialog->open();
}

} // namespace ventaro
