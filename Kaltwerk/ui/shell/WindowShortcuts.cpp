#include "WindowShortcuts.h"

#include <QKeyEvent>
#include <utility>

namespace ventaro {

namespace {

/// The letter of the key. Where no layout of the user's has Latin letters, shortcuts are where they
/// are on a US keyboard; a layout beside that has them is the platform's to find.
int latinLetter(const QKeyEvent& key) {
    constexpr int lastOfLatin = 0xFF;
    constexpr quint32 keyOfQ = 24; // X11 and Wayland number keys by their place
    constexpr quint32 keyOfW = 25;
    if (key.key() <= lastOfLatin || key.key() >= Qt::Key_Escape) { // no letter, or a Latin one
        return key.key();
    }
    switch (key.nativeScanCode()) {
    case keyOfQ:
        return Qt::Key_Q;
    case keyOfW:
        return Qt::Key_W;
    default:
        return key.key();
    }
}

} // namespace

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
    switch (latinLetter(*key)) {
    case Qt::Key_W:
        if (close_) {
            close_();
        }
        return true;
    case Qt::Key_Q:
        quit_();
        return true;
    default:
        return false;
    }
}

} // namespace ventaro
