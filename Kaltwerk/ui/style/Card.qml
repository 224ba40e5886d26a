import QtQuick
import Ventaro.Style

/// The ground of everything that belongs together.
Rectangle {
    radius: Theme.radiusCard
    color: Theme.card
    border.width: 1
    border.color: Theme.cardBorder
}
