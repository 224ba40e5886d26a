#pragma once

#include "FanControllerViewModel.h"

#include <QQmlEngine>

namespace ventaro {

/// Makes the controller a type of the views' module.
struct FanControllerViewModelForeign {
    Q_GADGET
    QML_FOREIGN(ventaro::FanControllerViewModel)
    QML_NAMED_ELEMENT(FanControllerViewModel)
    QML_UNCREATABLE("There is one controller, made by the program.")
};

} // namespace ventaro
