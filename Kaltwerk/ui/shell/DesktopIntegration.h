#pragma once

#include <QObject>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class QMenu;
class QWindow;

namespace ventaro {

/// How the desktop wants programs to look, as far as it has said so.
struct AppearanceHints {
    std::optional<bool> isDark;
    bool highContrast = false;
    bool reducedMotion = false;
};

/// What the status item says.
struct StatusItemText {
    QString summary;     ///< temperature and speed in one line
    QString temperature; ///< for where there is no room for more; empty while it is not known
    QString note;        ///< about the machine; may be empty
};

/// The status item as the desktop shows it: with its text beside the symbol, in a tray, or in a
/// window of its own. Main thread only.
class DesktopStatusItem : public QObject {
    Q_OBJECT

public:
    virtual void setText(const StatusItemText& text) = 0;

Q_SIGNALS:
    /// The user has pressed the keys for the end of the program.
    void quitRequested();
    /// The user reaches for the item, with whatever that does to the focus.
    void pressed();
    /// The user has clicked the item, which lies at `place` of the screen.
    void activated(QRect place);
};

/// What each kind of desktop has in a way of its own, and the toolkit has no word for. There is one
/// implementation per kind, in the folder named for it. Needs a QApplication; main thread only.
class DesktopIntegration : public QObject {
    Q_OBJECT

public:
    /// What is known by now; the desktop may take its time to answer.
    virtual AppearanceHints appearanceHints() const = 0;
    /// Puts a status item on the desktop, with `menu` behind it, which must outlive it.
    virtual std::unique_ptr<DesktopStatusItem> makeStatusItem(QMenu& menu,
                                                              const StatusItemText& text) = 0;
    /// Marks `window` as a utility window that is on every desktop and in no list of windows. To be
    /// called before each time it is shown.
    virtual void markAsUtilityWindow(QWindow& window) = 0;
    /// Whether transparent parts of a window show what is behind it.
    virtual bool isTransparencyShown() const = 0;
    /// Has the desktop show `text` as a notification. Returns at once; a desktop that shows none
    /// leaves a line in the log.
    virtual void notify(const QString& text) = 0;

Q_SIGNALS:
    void appearanceHintsChanged();
};

using DesktopFactory = std::function<std::unique_ptr<DesktopIntegration>()>;

/// The integration with this system's desktop. It is in a room of its own, which programs link
/// beside the shell's.
std::unique_ptr<DesktopIntegration> makeDesktopIntegration();

} // namespace ventaro
