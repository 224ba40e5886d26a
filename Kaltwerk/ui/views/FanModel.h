#pragma once

#include "ControllerListModel.h"

namespace ventaro {

/// The controller's fans, a row each, and what a user does with one of them. Main thread only.
class FanModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT

public:
    enum Role {
        fanIdRole = Qt::UserRole,
        nameRole,
        currentRPMRole,
        targetRPMRole,
        minRPMRole,
        maxRPMRole,
        isForcedRole,
        loadFractionRole, ///< 0 to 1
        loadBandRole,     ///< LoadBand
    };
    /// How hard a fan works, in the colours in which it is shown.
    enum LoadBand { Light, Heavy, Full }; // NOLINT: QML sees capitalised cases only
    Q_ENUM(LoadBand)

    using ControllerListModel::ControllerListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The current speed of the fan `fanId` in RPM; 0 without such a fan.
    Q_INVOKABLE double currentRPM(int fanId) const;
    /// Makes `rpm` the manual speed of the fan `fanId`; with both fans linked the other one gets
    /// the same share of its own range. Nothing is sent unless the manual profile is active.
    Q_INVOKABLE void setManualTarget(int fanId, double rpm);
    /// Makes `percent` of the fan's range its manual speed, as `setManualTarget`, and has the
    /// manual speeds set.
    Q_INVOKABLE void applyPreset(int fanId, double percent);

Q_SIGNALS:
    /// Some fan's reading is another one.
    void readingsChanged();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    void update();

    std::vector<FanReading> fans_;
};

/// Full from 85 % of the range, heavy from 55 %.
FanModel::LoadBand loadBand(double fraction);

} // namespace ventaro
