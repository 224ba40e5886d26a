#include "WindowShortcuts.h"

#include <QKeyEvent>
#include <utility>

namespace ventaro {

WindowShortcuts::WindowShortcuts(QWindow& window, std::function<void()> close,
                                 std::function<void()> quit)
    : QObject(&window), close_(std::move(close)), quit_(std::move(quit)) {
    window.installEventFilter(this);
}

bool WindowShortcuts::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() != Qt::ControlModifier || key->isAutoRepeat()) {
        return false;
    }
    switch (key->key()) {
    case Qt::Key_W:
        close_();
        return true;
    case Qt::Key_Q:
        quit_();
        return true;
    default:
        return false;
    }
}

} // namespace ventaro
