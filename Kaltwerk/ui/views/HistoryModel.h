#pragma once

#include "ControllerListModel.h"

#include <QList>
#include <QPointF>

namespace ventaro {

/// The controller's history, a row per sample, oldest first, and its columns as lines to be drawn,
/// x being a time in milliseconds since 1970. Main thread only.
class HistoryModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<QPointF> cpuTemp READ cpuTemp NOTIFY changed)
    Q_PROPERTY(QList<QPointF> gpuTemp READ gpuTemp NOTIFY changed)
    Q_PROPERTY(QList<QPointF> fan0RPM READ fan0RPM NOTIFY changed)
    Q_PROPERTY(QList<QPointF> fan1RPM READ fan1RPM NOTIFY changed)

public:
    enum Role { timestampRole = Qt::UserRole, cpuTempRole, gpuTempRole, fan0RPMRole, fan1RPMRole };

    using ControllerListModel::ControllerListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QList<QPointF> cpuTemp() const { return line(&TelemetrySample::cpuTemp); }
    QList<QPointF> gpuTemp() const { return line(&TelemetrySample::gpuTemp); }
    QList<QPointF> fan0RPM() const { return line(&TelemetrySample::fan0RPM); }
    QList<QPointF> fan1RPM() const { return line(&TelemetrySample::fan1RPM); }

Q_SIGNALS:
    void changed();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    void update();
    QList<QPointF> line(double TelemetrySample::*column) const;

    std::vector<TelemetrySample> samples_;
};

} // namespace ventaro
