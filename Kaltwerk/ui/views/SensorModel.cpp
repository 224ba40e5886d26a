#include "SensorModel.h"

#include "NumberFormat.h"

#include <QLocale>
#include <algorithm>
#include <utility>

namespace ventaro {

namespace {

QString valueText(const SensorReading& reading) {
    return QString::fromStdString(formatFixed(reading.value, 1) + " " + reading.unit);
}

} // namespace

int SensorGroup::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SensorGroup::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case nameRole:
        return QString::fromStdString(row.reading.name);
    case keyRole:
        return QString::fromStdString(row.reading.key);
    case valueTextRole:
        return row.valueText;
    default:
        return {};
    }
}

QHash<int, QByteArray> SensorGroup::roleNames() const {
    return {{nameRole, "name"}, {keyRole, "key"}, {valueTextRole, "valueText"}};
}

void SensorGroup::show(const std::vector<const SensorReading*>& readings) {
    const auto removeRow = [this](int row) {
        beginRemoveRows({}, row, row);
        rows_.erase(rows_.begin() + row);
        endRemoveRows();
    };
    for (int row = rowCount() - 1; row >= 0; --row) {
        const std::string& key = rows_[static_cast<std::size_t>(row)].reading.key;
        const bool stays = std::any_of(readings.begin(), readings.end(),
                                       [&](const SensorReading* r) { return r->key == key; });
        if (!stays) {
            removeRow(row);
        }
    }
    for (std::size_t place = 0; place < readings.size(); ++place) {
        const SensorReading& reading = *readings[place];
        const int row = static_cast<int>(place);
        if (place < rows_.size() && rows_[place].reading.key == reading.key) {
            refresh(row, reading);
        } else {
            beginInsertRows({}, row, row);
            rows_.insert(rows_.begin() + row, {reading, valueText(reading)});
            endInsertRows();
        }
    }
    // What is left has moved up, and stands there already.
    while (rows_.size() > readings.size()) {
        removeRow(rowCount() - 1);
    }
}

void SensorGroup::refresh(int row, const SensorReading& reading) {
    Row& shown = rows_[static_cast<std::size_t>(row)];
    if (shown.reading == reading) {
        return;
    }
    QList<int> changed;
    if (shown.reading.name != reading.name) {
        changed.append(nameRole);
    }
    QString text = valueText(reading);
    if (shown.valueText != text) {
        changed.append(valueTextRole);
    }
    shown = {reading, std::move(text)};
    if (!changed.isEmpty()) {
        Q_EMIT dataChanged(index(row), index(row), changed);
    }
}

SensorModel::SensorModel(QObject* parent) : ControllerListModel(parent) {
    for (SensorGroup*& group : groups_) {
        group = new SensorGroup(this);
    }
}

void SensorModel::follow(FanControllerViewModel& viewModel) {
    connect(&viewModel, &FanControllerViewModel::sensorsChanged, this, &SensorModel::update);
    update();
}

void SensorModel::setFilter(const QString& filter) {
    if (filter_ == filter) {
        return;
    }
    filter_ = filter;
    if (viewModel() != nullptr) {
        update();
    }
    Q_EMIT filterChanged();
}

void SensorModel::update() {
    const QLocale locale;
    const QString wanted = locale.toLower(filter_);
    const auto passes = [&](const SensorReading& sensor) {
        const auto contains = [&](const std::string& text) {
            return locale.toLower(QString::fromStdString(text)).contains(wanted);
        };
        return wanted.isEmpty() || contains(sensor.name) || contains(sensor.key);
    };
    std::array<std::vector<const SensorReading*>, allSensorCategories.size()> members;
    int matches = 0;
    for (const SensorReading& sensor : viewModel()->sensors()) {
        if (passes(sensor)) {
            members[static_cast<std::size_t>(sensor.category)].push_back(&sensor);
            ++matches;
        }
    }
    for (std::size_t group = 0; group < groups_.size(); ++group) {
        groups_[group]->show(members[group]);
    }
    const int total = static_cast<int>(viewModel()->sensors().size());
    if (totalCount_ != total || matchCount_ != matches) {
        totalCount_ = total;
        matchCount_ = matches;
        Q_EMIT countsChanged();
    }
}

int SensorModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(groups_.size());
}

QVariant SensorModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    switch (role) {
    case titleRole: {
        const std::string_view title = rawValue(allSensorCategories[row]);
        // Not by the user's locale: the titles are German everywhere.
        return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())).toUpper();
    }
    case sensorsRole:
        return QVariant::fromValue(groups_[row]);
    default:
        return {};
    }
}

QHash<int, QByteArray> SensorModel::roleNames() const {
    return {{titleRole, "title"}, {sensorsRole, "sensors"}};
}

} // namespace ventaro
