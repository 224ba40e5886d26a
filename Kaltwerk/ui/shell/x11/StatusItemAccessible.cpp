#include "StatusItemAccessible.h"

#include "StatusItemWindow.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QGuiApplication>

namespace ventaro {

namespace {

class StatusItemAccessible final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit StatusItemAccessible(StatusItemWindow& item) : QAccessibleObject(&item) {}

    QAccessible::Role role() const override { return QAccessible::Button; }
    QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name ? item().text() : QString();
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = true;
        state.focused = isValid() && QGuiApplication::focusWindow() == &item();
        state.invisible = !isValid() || !item().isVisible();
        return state;
    }
    QRect rect() const override { return isValid() ? item().geometry() : QRect(); }
    QWindow* window() const override { return isValid() ? &item() : nullptr; }

    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(qApp);
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), showMenuAction()}; }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction()) {
            item().activate();
        } else if (isValid() && name == showMenuAction()) {
            item().requestMenu();
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    StatusItemWindow& item() const { return static_cast<StatusItemWindow&>(*object()); }
};

QAccessibleInterface* make(const QString& /*className*/, QObject* object) {
    auto* item = qobject_cast<StatusItemWindow*>(object);
    return item != nullptr ? new StatusItemAccessible(*item) : nullptr;
}

} // namespace

void makeStatusItemsAccessible() {
    QAccessible::installFactory(make); // which is passed over if it is there already
}

} // namespace ventaro
