#pragma once

#include "NumberFormat.h"

#include <QObject>
#include <QQmlEngine>
#include <QString>

namespace ventaro {

/// The one way in which views turn numbers into digits. Any thread.
class NumberText : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// With `decimals` digits after the point, 0 to 9.
    Q_INVOKABLE static QString fixed(double value, int decimals) {
        constexpr int most = 9;
        return QString::fromStdString(formatFixed(value, qBound(0, decimals, most)));
    }
    /// Without the fraction.
    Q_INVOKABLE static QString whole(double value) {
        return QString::fromStdString(formatWhole(value));
    }
    /// Rounded to a whole number.
    Q_INVOKABLE static QString rounded(double value) {
        return QString::fromStdString(formatRounded(value));
    }
};

} // namespace ventaro
