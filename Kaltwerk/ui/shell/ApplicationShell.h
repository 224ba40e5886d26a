#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace ventaro {

/// How much of the desktop the application takes: the values are the platform's. It is for desktops
/// whose task bar goes by the application; where it goes by the windows, the policy only says what
/// the application is at the moment.
enum class ActivationPolicy {
    regular = 0,   ///< a window with an entry in the task bar
    accessory = 1, ///< the status item alone
};

/// A window of the application, shown or not. Main thread only.
class ApplicationWindow {
public:
    virtual ~ApplicationWindow() = default;
    virtual QString title() const = 0;
    /// Whether the user can see it; not while it is an icon in the task bar.
    virtual bool isVisible() const = 0;
    /// Takes it off the screen. What is only about to come on screen still comes.
    virtual void orderOut() = 0;
    /// Tells the observers and takes it off the screen, whether it is on screen or not.
    virtual void close() = 0;
    /// Brings it on screen, or to the front, and gives it the keyboard. A window that is not on
    /// screen gets there by the queue.
    virtual void makeKeyAndOrderFront() = 0;
};

/// What the application's logic needs of the desktop. Main thread only.
class ApplicationShell {
public:
    using Action = std::function<void()>;
    using WillCloseObserver = std::function<void(ApplicationWindow&)>;
    using ObserverToken = int;

    virtual ~ApplicationShell() = default;

    virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Makes the application the one that the user works with.
    virtual void activateIgnoringOtherApps() = 0;
    /// In the application's window order.
    virtual std::vector<ApplicationWindow*> windows() = 0;
    /// Brings the window scene with this identifier on screen and makes it if need be.
    virtual void openWindow(const QString& identifier) = 0;
    /// Calls `observer` with each window that is about to close.
    virtual ObserverToken addWindowWillCloseObserver(WillCloseObserver observer) = 0;
    virtual void removeObserver(ObserverToken token) = 0;
    /// Runs `action` later, in the order of the calls.
    virtual void async(Action action) = 0;
    /// Ends the program by way of the event loop.
    virtual void terminate() = 0;
};

} // namespace ventaro
