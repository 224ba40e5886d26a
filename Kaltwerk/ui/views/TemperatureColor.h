#pragma once

#include "TemperatureBand.h"

#include <QObject>
#include <QQmlEngine>

namespace ventaro {

/// How warm a temperature is, for views to colour it.
class TemperatureColor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    enum Band { Green, Yellow, Orange, Red }; // NOLINT: QML sees capitalised cases only
    Q_ENUM(Band)

    Q_INVOKABLE static ventaro::TemperatureColor::Band band(double celsius) {
        switch (temperatureBand(celsius)) {
        case TemperatureBand::red:
            return Red;
        case TemperatureBand::orange:
            return Orange;
        case TemperatureBand::yellow:
            return Yellow;
        case TemperatureBand::green:
            break;
        }
        return Green;
    }
};

} // namespace ventaro
