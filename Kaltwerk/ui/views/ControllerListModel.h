#pragma once

#include "FanControllerViewModel.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QQmlEngine>

namespace ventaro {

/// A list that shows something of the controller, and tells of what has changed only. Main thread
/// only.
class ControllerListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(ventaro::FanControllerViewModel* viewModel READ viewModel WRITE setViewModel NOTIFY
                   viewModelChanged REQUIRED)

public:
    using QAbstractListModel::QAbstractListModel;

    FanControllerViewModel* viewModel() const { return viewModel_; }
    void setViewModel(FanControllerViewModel* viewModel);

Q_SIGNALS:
    void viewModelChanged();

protected:
    /// Connects this list with the signals of `viewModel` that concern it, and reads it.
    virtual void follow(FanControllerViewModel& viewModel) = 0;

private:
    QPointer<FanControllerViewModel> viewModel_;
};

} // namespace ventaro
