#include "ProfileModel.h"

#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

int rowOf(ControlProfile profile) {
    const auto* found = std::find(allControlProfiles.begin(), allControlProfiles.end(), profile);
    return static_cast<int>(found - allControlProfiles.begin());
}

} // namespace

void ProfileModel::follow(FanControllerViewModel& viewModel) {
    connect(&viewModel, &FanControllerViewModel::activeProfileChanged, this, &ProfileModel::update);
    connect(&viewModel, &FanControllerViewModel::isProfileInForceChanged, this, [this] {
        const QModelIndex place = index(rowOf(active_));
        Q_EMIT dataChanged(place, place, {isInForceRole});
    });
    update();
}

void ProfileModel::update() {
    const ControlProfile before = std::exchange(active_, viewModel()->activeProfile());
    if (before == active_) {
        return;
    }
    for (const ControlProfile profile : {before, active_}) {
        const QModelIndex place = index(rowOf(profile));
        Q_EMIT dataChanged(place, place, {isActiveRole, isInForceRole});
    }
    Q_EMIT activeChanged();
}

QString ProfileModel::activeTitle() const { return text(rawValue(active_)); }

int ProfileModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(allControlProfiles.size());
}

QVariant ProfileModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ControlProfile profile = allControlProfiles[static_cast<std::size_t>(index.row())];
    switch (role) {
    case titleRole:
        return text(rawValue(profile));
    case subtitleRole:
        return text(subtitle(profile));
    case symbolRole:
        return text(iconName(profile));
    case isActiveRole:
        return profile == active_;
    case isInForceRole:
        return profile != active_ || viewModel()->isProfileInForce();
    default:
        return {};
    }
}

QHash<int, QByteArray> ProfileModel::roleNames() const {
    return {{titleRole, "title"},
            {subtitleRole, "subtitle"},
            {symbolRole, "symbol"},
            {isActiveRole, "isActive"},
            {isInForceRole, "isInForce"}};
}

void ProfileModel::select(int row) {
    if (row >= 0 && row < rowCount()) {
        viewModel()->selectProfile(allControlProfiles[static_cast<std::size_t>(row)]);
    }
}

} // namespace ventaro
