#pragma once

#include "ControllerListModel.h"

#include <QString>
#include <vector>

namespace ventaro {

/// The hardware inventory, a row for each section. Main thread only.
class HardwareModel : public ventaro::ControllerListModel {
    Q_OBJECT
    QML_ELEMENT
    /// Puts dots in the place of serial numbers and of the hardware's UUID, wherever they are shown
    /// or copied.
    Q_PROPERTY(bool hidesIdentifiers READ hidesIdentifiers WRITE setHidesIdentifiers NOTIFY
                   hidesIdentifiersChanged)

public:
    enum Role {
        titleRole = Qt::UserRole,
        subtitleRole,
        symbolRole,
        accentNameRole,
        specsRole,    ///< a list of objects with "label" and "value"
        subCardsRole, ///< a list of such lists
    };

    using ControllerListModel::ControllerListModel;

    bool hidesIdentifiers() const { return hidesIdentifiers_; }
    void setHidesIdentifiers(bool hides);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The whole inventory as it is shown.
    Q_INVOKABLE QString inventoryText() const;

Q_SIGNALS:
    void hidesIdentifiersChanged();

protected:
    void follow(FanControllerViewModel& viewModel) override;

private:
    void update();
    QString shownValue(const HardwareSpecItem& item) const;
    QVariantList shownRows(const HardwareSectionData::Rows& rows) const;
    QVariant valueOf(const HardwareSectionData& section, int role) const;

    std::vector<HardwareSectionData> sections_;
    bool hidesIdentifiers_ = false;
};

} // namespace ventaro
