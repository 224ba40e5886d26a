#pragma once

#include <QObject>
#include <QWindow>
#include <functional>

namespace ventaro {

/// The keys that work wherever the focus is in a window: Ctrl+W closes it, Ctrl+Q ends the program.
class WindowShortcuts : public QObject {
    Q_OBJECT

public:
    /// Belongs to `window`. `close` may be empty.
    WindowShortcuts(QWindow& window, std::function<void()> close, std::function<void()> quit);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> close_;
    std::function<void()> quit_;
};

} // namespace ventaro
