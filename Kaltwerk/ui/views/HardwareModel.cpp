#include "HardwareModel.h"

#include <QVariantMap>
#include <utility>

namespace ventaro {

namespace {

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

} // namespace

void HardwareModel::follow(FanControllerViewModel& viewModel) {
    connect(&viewModel, &FanControllerViewModel::hardwareSectionsChanged, this,
            &HardwareModel::update);
    update();
}

void HardwareModel::update() {
    const std::vector<HardwareSectionData>& sections = viewModel()->hardwareSections();
    if (sections.size() != sections_.size()) {
        beginResetModel();
        sections_ = sections;
        endResetModel();
        return;
    }
    // Every load gives all sections and rows new identifiers: what is shown tells what has changed.
    const QList<int> roles = roleNames().keys();
    for (std::size_t row = 0; row < sections.size(); ++row) {
        const HardwareSectionData before = std::exchange(sections_[row], sections[row]);
        QList<int> changed;
        for (const int role : roles) {
            if (valueOf(before, role) != valueOf(sections[row], role)) {
                changed.append(role);
            }
        }
        if (!changed.isEmpty()) {
            const QModelIndex place = index(static_cast<int>(row));
            Q_EMIT dataChanged(place, place, changed);
        }
    }
}

void HardwareModel::setHidesIdentifiers(bool hides) {
    if (hidesIdentifiers_ == hides) {
        return;
    }
    hidesIdentifiers_ = hides;
    if (!sections_.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {specsRole, subCardsRole});
    }
    Q_EMIT hidesIdentifiersChanged();
}

QString HardwareModel::shownValue(const HardwareSpecItem& item) const {
    return hidesIdentifiers_ && item.kind == SpecKind::identifier ? QStringLiteral("••••••••")
                                                                  : text(item.value);
}

QVariantList HardwareModel::shownRows(const HardwareSectionData::Rows& rows) const {
    QVariantList shown;
    for (const HardwareSpecItem& item : rows) {
        shown.append(QVariantMap{{QStringLiteral("label"), text(item.label)},
                                 {QStringLiteral("value"), shownValue(item)}});
    }
    return shown;
}

QVariant HardwareModel::valueOf(const HardwareSectionData& section, int role) const {
    switch (role) {
    case titleRole:
        return text(section.title);
    case subtitleRole:
        return text(section.subtitle);
    case symbolRole:
        return text(section.icon);
    case accentNameRole:
        return text(section.accentColorName);
    case specsRole:
        return shownRows(section.specs);
    case subCardsRole: {
        QVariantList cards;
        for (const HardwareSectionData::Rows& card : section.subCards) {
            cards.append(QVariant(shownRows(card)));
        }
        return cards;
    }
    default:
        return {};
    }
}

int HardwareModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sections_.size());
}

QVariant HardwareModel::data(const QModelIndex& index, int role) const {
    return checkIndex(index, CheckIndexOption::IndexIsValid)
               ? valueOf(sections_[static_cast<std::size_t>(index.row())], role)
               : QVariant();
}

QHash<int, QByteArray> HardwareModel::roleNames() const {
    return {{titleRole, "title"},           {subtitleRole, "subtitle"}, {symbolRole, "symbol"},
            {accentNameRole, "accentName"}, {specsRole, "specs"},       {subCardsRole, "subCards"}};
}

QString HardwareModel::inventoryText() const {
    QString inventory;
    const auto append = [&](const HardwareSectionData::Rows& rows, const QString& indent) {
        for (const HardwareSpecItem& item : rows) {
            inventory += indent + text(item.label) + ": " + shownValue(item) + "\n";
        }
    };
    for (const HardwareSectionData& section : sections_) {
        inventory += (inventory.isEmpty() ? "" : "\n") + text(section.title) + "\n" +
                     text(section.subtitle) + "\n";
        append(section.specs, QStringLiteral("  "));
        for (const HardwareSectionData::Rows& card : section.subCards) {
            inventory += "\n";
            append(card, QStringLiteral("    "));
        }
    }
    return inventory;
}

} // namespace ventaro
