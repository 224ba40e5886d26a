#include "ControllerListModel.h"

namespace ventaro {

void ControllerListModel::setViewModel(FanControllerViewModel* viewModel) {
    if (viewModel_ == viewModel) {
        return;
    }
    if (viewModel_ != nullptr) {
        disconnect(viewModel_, nullptr, this, nullptr);
    }
    viewModel_ = viewModel;
    if (viewModel_ != nullptr) {
        follow(*viewModel_);
    }
    Q_EMIT viewModelChanged();
}

} // namespace ventaro
