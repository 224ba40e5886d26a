#pragma once

#include "ControllerListModel.h"

#include <array>
#include <string>
#include <vector>

namespace ventaro {

/// Some of the controller's sensors, a row each. Main thread only.
class SensorGroup : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Groups come from SensorModel.")

public:
    enum Role { nameRole = Qt::UserRole, keyRole, valueTextRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Makes `readings` the rows. A sensor that stays keeps its row, and tells only of what is
    /// another text than before.
    void show(const std::vector<const SensorReading*>& readings);

private:
    struct Row {
        SensorReading reading;
        QString valueText;
    };

    void refresh(int row, const SensorReading& reading);

    std::vector<Row> rows_;
};

/// The controller's sensors that pass a filter, a row for each category, in the order in which they
/// are shown. Main thread only.
class SensorModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT
    /// Part of a name or of a key, in any case, with all its blanks; empty lets everything pass.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    /// How many sensors there are, and how many pass the filter.
    Q_PROPERTY(int totalCount READ totalCount NOTIFY countsChanged)
    Q_PROPERTY(int matchCount READ matchCount NOTIFY countsChanged)

public:
    enum Role { titleRole = Qt::UserRole, sensorsRole };

    explicit SensorModel(QObject* parent = nullptr);

    const QString& filter() const { return filter_; }
    void setFilter(const QString& filter);
    int totalCount() const { return totalCount_; }
    int matchCount() const { return matchCount_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void filterChanged();
    void countsChanged();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    void update();

    QString filter_;
    std::array<SensorGroup*, allSensorCategories.size()> groups_{}; ///< children of this object
    int totalCount_ = 0;
    int matchCount_ = 0;
};

} // namespace ventaro
