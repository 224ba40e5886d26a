#pragma once

#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QMetaProperty>
#include <QObject>
#include <QVariant>
#include <utility>
#include <vector>

namespace ventaro {

/// Watches that every property's change signal is heard exactly when its value has changed.
class PropertyAudit : public QObject {
    Q_OBJECT
public:
    explicit PropertyAudit(QObject& audited) : audited_(audited) {
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("heard()"));
        for (int index = 0; index < audited.metaObject()->propertyCount(); ++index) {
            const QMetaProperty property = audited.metaObject()->property(index);
            values_.push_back(property.read(&audited));
            if (property.hasNotifySignal()) {
                connect(&audited, property.notifySignal(), this, slot, Qt::UniqueConnection);
            }
        }
    }
    ~PropertyAudit() override {
        for (std::size_t index = 0; index < values_.size(); ++index) {
            const QMetaProperty property = audited_.metaObject()->property(static_cast<int>(index));
            EXPECT_TRUE(property.read(&audited_) == values_[index])
                << property.name() << " has changed in silence";
        }
    }

    Q_SLOT void heard() {
        bool hasChanged = false;
        for (std::size_t index = 0; index < values_.size(); ++index) {
            const QMetaProperty property = audited_.metaObject()->property(static_cast<int>(index));
            if (property.notifySignalIndex() == senderSignalIndex()) {
                QVariant value = property.read(&audited_);
                hasChanged = hasChanged || value != values_[index];
                values_[index] = std::move(value);
            }
        }
        EXPECT_TRUE(hasChanged)
            << audited_.metaObject()->method(senderSignalIndex()).name().toStdString()
            << " without a change";
    }

private:
    QObject& audited_;
    std::vector<QVariant> values_;
};

} // namespace ventaro
