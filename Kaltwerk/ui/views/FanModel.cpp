#include "FanModel.h"

#include "FanRange.h"

#include <algorithm>
#include <cmath>

namespace ventaro {

FanModel::LoadBand loadBand(double fraction) {
    constexpr double full = 0.85;
    constexpr double heavy = 0.55;
    return fraction >= full    ? FanModel::Full
           : fraction >= heavy ? FanModel::Heavy
                               : FanModel::Light;
}

namespace {

QVariant valueOf(const FanReading& fan, int role) {
    switch (role) {
    case FanModel::fanIdRole:
        return static_cast<int>(fan.id);
    case FanModel::nameRole:
        return QString::fromStdString(fan.name);
    case FanModel::currentRPMRole:
        return fan.currentRPM;
    case FanModel::targetRPMRole:
        return fan.targetRPM;
    case FanModel::minRPMRole:
        return fan.minRPM;
    case FanModel::maxRPMRole:
        return fan.maxRPM;
    case FanModel::isForcedRole:
        return fan.mode == FanMode::forced;
    case FanModel::loadFractionRole:
        return fan.percentage();
    case FanModel::loadBandRole:
        return loadBand(fan.percentage());
    default:
        return {};
    }
}

QList<int> changedRoles(const FanReading& before, const FanReading& after,
                        const QList<int>& roles) {
    QList<int> changed;
    for (const int role : roles) {
        if (valueOf(before, role) != valueOf(after, role)) {
            changed.append(role);
        }
    }
    return changed;
}

} // namespace

void FanModel::follow(FanControllerViewModel& viewModel) {
    connect(&viewModel, &FanControllerViewModel::fansChanged, this, &FanModel::update);
    update();
}

void FanModel::update() {
    const std::vector<FanReading>& fans = viewModel()->fans();
    const bool sameFans =
        std::equal(fans.begin(), fans.end(), fans_.begin(), fans_.end(),
                   [](const FanReading& a, const FanReading& b) { return a.id == b.id; });
    if (!sameFans) {
        beginResetModel();
        fans_ = fans;
        endResetModel();
    } else {
        const QList<int> roles = roleNames().keys();
        for (std::size_t row = 0; row < fans.size(); ++row) {
            const QList<int> changed = changedRoles(fans_[row], fans[row], roles);
            fans_[row] = fans[row];
            if (!changed.isEmpty()) {
                const QModelIndex place = index(static_cast<int>(row));
                Q_EMIT dataChanged(place, place, changed);
            }
        }
    }
    Q_EMIT readingsChanged();
}

int FanModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(fans_.size());
}

QVariant FanModel::data(const QModelIndex& index, int role) const {
    return checkIndex(index, CheckIndexOption::IndexIsValid)
               ? valueOf(fans_[static_cast<std::size_t>(index.row())], role)
               : QVariant();
}

QHash<int, QByteArray> FanModel::roleNames() const {
    return {{fanIdRole, "fanId"},           {nameRole, "name"},
            {currentRPMRole, "currentRPM"}, {targetRPMRole, "targetRPM"},
            {minRPMRole, "minRPM"},         {maxRPMRole, "maxRPM"},
            {isForcedRole, "isForced"},     {loadFractionRole, "loadFraction"},
            {loadBandRole, "loadBand"}};
}

double FanModel::currentRPM(int fanId) const {
    const FanReading* fan = findFan(fans_, fanId);
    return fan != nullptr ? fan->currentRPM : 0;
}

void FanModel::setManualTarget(int fanId, double rpm) {
    const FanReading* fan = findFan(fans_, fanId);
    if (fan == nullptr || !std::isfinite(rpm)) {
        return;
    }
    if (fanId == 0) {
        viewModel()->setManualRPMFan0(rpm);
    } else {
        viewModel()->setManualRPMFan1(rpm);
    }
    if (viewModel()->linkFansInManualMode()) {
        viewModel()->setManualPercentageForBoth((rpm - fan->minRPM) /
                                                std::max(fan->maxRPM - fan->minRPM, 1.0));
    }
}

void FanModel::applyPreset(int fanId, double percent) {
    const FanReading* fan = findFan(fans_, fanId);
    if (fan == nullptr) {
        return;
    }
    setManualTarget(fanId, std::round(fan->minRPM + percent / 100 * (fan->maxRPM - fan->minRPM)));
    viewModel()->applyManualSpeeds();
}

} // namespace ventaro
