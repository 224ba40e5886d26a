#pragma once

#include "ControllerListModel.h"

namespace ventaro {

/// The control profiles, a row each, with the active one marked. Main thread only.
class ProfileModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT
    /// The title of the active profile.
    Q_PROPERTY(QString activeTitle READ activeTitle NOTIFY activeChanged)

public:
    enum Role { titleRole = Qt::UserRole, subtitleRole, symbolRole, isActiveRole, isInForceRole };

    using ControllerListModel::ControllerListModel;

    QString activeTitle() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Has the controller select the profile of this row; nothing for a row that there is not.
    Q_INVOKABLE void select(int row);

Q_SIGNALS:
    void activeChanged();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    void update();

    ControlProfile active_ = ControlProfile::systemAuto;
};

} // namespace ventaro
