import QtQuick
import QtQuick.Templates as T

/// The bare button below every choice of one among several. It shows `isOn`; a click changes
/// nothing by itself: whoever owns the state answers it.
T.RadioButton {
    id: button

    property bool isOn: false

    autoExclusive: false
    checked: isOn
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    // Without these, assistive technology would only set what is shown.
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }
    Accessible.onToggleAction: Accessible.pressAction()
    // The template has just checked itself.
    onClicked: checked = Qt.binding(() => button.isOn)
}
