#include "HistoryModel.h"

#include "SensorCatalog.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace ventaro {

namespace {

double milliseconds(std::chrono::system_clock::time_point time) {
    return std::chrono::duration<double, std::milli>(time.time_since_epoch()).count();
}

} // namespace

void HistoryModel::follow(FanControllerViewModel& viewModel) {
    connect(&viewModel, &FanControllerViewModel::historyChanged, this, &HistoryModel::update);
    update();
}

void HistoryModel::update() {
    const std::vector<TelemetrySample>& now = viewModel()->history();
    // The samples that have become too old leave at the front, new ones come at the end.
    const auto firstKept =
        std::find_if(samples_.begin(), samples_.end(), [&](const TelemetrySample& sample) {
            return !now.empty() && sample.id == now.front().id;
        });
    const auto gone = static_cast<int>(firstKept - samples_.begin());
    if (gone > 0) {
        beginRemoveRows({}, 0, gone - 1);
        samples_.erase(samples_.begin(), firstKept);
        endRemoveRows();
    }
    const auto before = static_cast<int>(samples_.size());
    const auto after = static_cast<int>(now.size());
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        samples_ = now;
        endInsertRows();
    }
    if (samples_ != now) {
        beginResetModel();
        samples_ = now;
        endResetModel();
    }
    Q_EMIT changed();
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(samples_.size());
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const TelemetrySample& sample = samples_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case timestampRole:
        return milliseconds(sample.timestamp);
    case cpuTempRole:
        return sample.cpuTemp;
    case gpuTempRole:
        return sample.gpuTemp;
    case fan0RPMRole:
        return sample.fan0RPM;
    case fan1RPMRole:
        return sample.fan1RPM;
    default:
        return {};
    }
}

QHash<int, QByteArray> HistoryModel::roleNames() const {
    return {{timestampRole, "timestamp"},
            {cpuTempRole, "cpuTemp"},
            {gpuTempRole, "gpuTemp"},
            {fan0RPMRole, "fan0RPM"},
            {fan1RPMRole, "fan1RPM"}};
}

QList<QPointF> HistoryModel::line(double TelemetrySample::*column) const {
    const bool isTemperature =
        column == &TelemetrySample::cpuTemp || column == &TelemetrySample::gpuTemp;
    QList<QPointF> points;
    points.reserve(static_cast<qsizetype>(samples_.size()));
    for (const TelemetrySample& sample : samples_) {
        const double value = sample.*column;
        const bool isShown = !isTemperature || isPlausibleTemperature(value);
        points.append({milliseconds(sample.timestamp), isShown ? value : std::nan("")});
    }
    return points;
}

} // namespace ventaro
