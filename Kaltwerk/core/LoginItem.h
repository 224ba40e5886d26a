#pragma once

#include <QObject>
#include <optional>
#include <string>

namespace ventaro {

class MachineRoot;
struct UserSession;

/// Whether the application starts when its user logs in. Main thread only.
class LoginItem : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the item.
    LoginItem(const UserSession& session, const MachineRoot& machineRoot);

    bool isEnabled() const { return isEnabled_; }
    /// `minimized`: to the menu bar alone.
    void setEnabled(bool enabled, bool minimized);

Q_SIGNALS:
    void isEnabledChanged();
    /// A line for the user.
    void reported(const std::optional<std::string>& message, bool isError);

private:
    std::string text(bool minimized) const;

    const UserSession& session_;
    const MachineRoot& machineRoot_;
    bool isEnabled_ = false;
};

} // namespace ventaro
