#include "CurveModel.h"

#include "CurveFile.h"
#include "FanRange.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace ventaro {

namespace {

/// Whatever the points' identities.
bool isSameLine(const std::vector<CurvePoint>& a, const std::vector<CurvePoint>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const CurvePoint& left, const CurvePoint& right) {
                          return left.temperature == right.temperature &&
                                 left.speedPercent == right.speedPercent;
                      });
}

/// The whole number nearest to `value` within the limits; never a negative zero.
double wholeWithin(double value, double least, double most) {
    return std::clamp(std::round(value), least, most) + 0.0;
}

} // namespace

void CurveModel::follow(FanControllerViewModel& viewModel) {
    using Controller = FanControllerViewModel;
    connect(&viewModel, &Controller::curvePointsChanged, this, &CurveModel::update);
    connect(&viewModel, &Controller::fansChanged, this, [this] {
        if (!points_.empty()) {
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {leftRPMRole, rightRPMRole});
        }
        Q_EMIT currentChanged();
    });
    for (const auto signal : {&Controller::cpuMaxTempChanged, &Controller::gpuMaxTempChanged,
                              &Controller::curveSensorSourceChanged}) {
        connect(&viewModel, signal, this, &CurveModel::currentChanged);
    }
    connect(&viewModel, &Controller::curveSensorSourceChanged, this, &CurveModel::sourceChanged);
    connect(&viewModel, &Controller::activeProfileChanged, this, &CurveModel::isActiveChanged);
    update();
}

void CurveModel::update() {
    const Curve& points = viewModel()->curvePoints();
    if (points.size() != points_.size()) {
        beginResetModel();
        points_ = points;
        endResetModel();
    }
    for (std::size_t row = 0; row < points.size(); ++row) {
        QList<int> changed;
        if (points_[row].temperature != points[row].temperature) {
            changed << temperatureRole;
        }
        if (points_[row].speedPercent != points[row].speedPercent) {
            changed << percentRole << leftRPMRole << rightRPMRole;
        }
        points_[row] = points[row];
        if (!changed.isEmpty()) {
            const QModelIndex place = index(static_cast<int>(row));
            Q_EMIT dataChanged(place, place, changed);
        }
    }
    Q_EMIT curveChanged();
    Q_EMIT currentChanged();
}

int CurveModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(points_.size());
}

QVariant CurveModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const CurvePoint& point = points_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case temperatureRole:
        return point.temperature;
    case percentRole:
        return point.speedPercent;
    case leftRPMRole:
        return speed(0, point.speedPercent);
    case rightRPMRole:
        return speed(1, point.speedPercent);
    default:
        return {};
    }
}

QHash<int, QByteArray> CurveModel::roleNames() const {
    return {{temperatureRole, "temperature"},
            {percentRole, "percent"},
            {leftRPMRole, "leftRPM"},
            {rightRPMRole, "rightRPM"}};
}

QList<int> CurveModel::sortedRows() const {
    QList<int> rows(rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    std::stable_sort(rows.begin(), rows.end(), [this](int a, int b) {
        return points_[static_cast<std::size_t>(a)].temperature <
               points_[static_cast<std::size_t>(b)].temperature;
    });
    return rows;
}

QList<QPointF> CurveModel::sorted() const {
    QList<QPointF> line;
    for (const int row : sortedRows()) {
        const CurvePoint& point = points_[static_cast<std::size_t>(row)];
        line.append({point.temperature, point.speedPercent});
    }
    return line;
}

double CurveModel::currentTemperature() const { return viewModel()->currentSourceTemperature(); }

double CurveModel::currentPercent() const {
    return viewModel()->evaluateCurvePercent(currentTemperature());
}

double CurveModel::currentRPM() const { return speed(0, currentPercent()); }

double CurveModel::speed(int fan, double percent) const {
    const FanRange range = rangeOf(viewModel()->fans(), fan);
    return std::round(range.minimum + percent / 100 * (range.maximum - range.minimum));
}

int CurveModel::source() const {
    const auto* found = std::find(allCurveSensorSources.begin(), allCurveSensorSources.end(),
                                  viewModel()->curveSensorSource());
    return static_cast<int>(found - allCurveSensorSources.begin());
}

bool CurveModel::isActive() const {
    return viewModel()->activeProfile() == ControlProfile::smartCurve;
}

int CurveModel::nearestRow(double temperature) const {
    const double wanted = std::round(temperature);
    const auto nearest = std::min_element(
        points_.begin(), points_.end(), [wanted](const CurvePoint& a, const CurvePoint& b) {
            return std::abs(a.temperature - wanted) < std::abs(b.temperature - wanted);
        });
    return nearest != points_.end() ? static_cast<int>(nearest - points_.begin()) : -1;
}

int CurveModel::drag(double temperature, double percent) {
    if (!std::isfinite(temperature) || !std::isfinite(percent)) {
        return -1;
    }
    const double celsius = wholeWithin(temperature, minimumTemperature, maximumTemperature);
    const int row = nearestRow(celsius);
    movePoint(row, celsius, std::round(percent / percentStep) * percentStep);
    return row;
}

void CurveModel::movePoint(int row, double temperature, double percent) {
    if (row < 0 || row >= rowCount() || !std::isfinite(temperature) || !std::isfinite(percent)) {
        return;
    }
    beginEdit();
    Curve points = points_;
    CurvePoint& point = points[static_cast<std::size_t>(row)];
    if (point.temperature != temperature) {
        point.temperature = wholeWithin(temperature, minimumTemperature, maximumTemperature);
    }
    if (point.speedPercent != percent) {
        point.speedPercent = wholeWithin(percent, 0, 100);
    }
    viewModel()->setCurvePoints(std::move(points));
}

void CurveModel::beginEdit() {
    if (!editedFrom_) {
        editedFrom_ = points_;
    }
}

bool CurveModel::closeEdit() {
    constexpr std::size_t mostEdits = 100;
    // Closed before anybody hears of it: a control that loses the focus by it ends its edit, too.
    const auto before = std::exchange(editedFrom_, std::nullopt);
    if (before && !isSameLine(*before, points_)) {
        undo_.push_back(*before);
        if (undo_.size() > mostEdits) {
            undo_.erase(undo_.begin());
        }
        redo_.clear();
        Q_EMIT editsChanged();
    }
    return before.has_value();
}

void CurveModel::endEdit() {
    if (closeEdit()) {
        apply();
    }
}

void CurveModel::cancelEdit() {
    const auto before = std::exchange(editedFrom_, std::nullopt);
    if (!before || isSameLine(*before, points_)) {
        return;
    }
    viewModel()->setCurvePoints(*before);
    if (isActive()) {
        // A tick in between may have applied what is now taken back.
        viewModel()->applySmartCurveStep(false);
    }
}

void CurveModel::apply() {
    setProblem({});
    viewModel()->saveSettings();
    if (isActive()) {
        viewModel()->applySmartCurveStep(true);
    }
}

void CurveModel::replace(Curve points) {
    closeEdit();
    beginEdit();
    viewModel()->setCurvePoints(std::move(points));
    endEdit();
}

void CurveModel::reset() { replace(defaultCurve()); }

void CurveModel::step(std::vector<Curve>& from, std::vector<Curve>& to) {
    // What is being edited counts as an edit of its own.
    const bool wasOpen = closeEdit();
    if (from.empty()) {
        if (wasOpen) {
            apply();
        }
        return;
    }
    Curve points = std::move(from.back());
    from.pop_back();
    to.push_back(points_);
    viewModel()->setCurvePoints(std::move(points));
    Q_EMIT editsChanged();
    apply();
}

void CurveModel::undo() { step(undo_, redo_); }

void CurveModel::redo() { step(redo_, undo_); }

void CurveModel::chooseSource(int row) {
    if (row < 0 || row >= static_cast<int>(allCurveSensorSources.size()) || row == source()) {
        return;
    }
    viewModel()->setCurveSensorSource(allCurveSensorSources[static_cast<std::size_t>(row)]);
    apply();
}

void CurveModel::activate() { viewModel()->selectProfile(ControlProfile::smartCurve); }

void CurveModel::setProblem(const QString& problem) {
    if (problem_ != problem) {
        problem_ = problem;
        Q_EMIT problemChanged();
    }
}

void CurveModel::exportTo(const QUrl& file) {
    try {
        writeCurveFile(file.toLocalFile().toStdString(), points_,
                       {minimumTemperature, maximumTemperature});
        setProblem({});
    } catch (const std::exception& error) {
        setProblem(QString::fromUtf8(error.what()));
    }
}

void CurveModel::importFrom(const QUrl& file) {
    try {
        replace(readCurveFile(file.toLocalFile().toStdString(),
                              {minimumTemperature, maximumTemperature}));
    } catch (const std::exception& error) {
        setProblem(QString::fromUtf8(error.what()));
    }
}

} // namespace ventaro
