#pragma once

#include <QObject>
#include <optional>
#include <string>

namespace ventaro {

class MachineRoot;

/// The one line that tells the user what has become of his wishes, German. Main thread only.
class StatusLine : public QObject {
    Q_OBJECT

public:
    /// `machineRoot` must outlive the line.
    explicit StatusLine(const MachineRoot& machineRoot) : machineRoot_(machineRoot) {}

    const std::optional<std::string>& message() const { return message_; }
    bool isError() const { return isError_; }

    /// No value takes the line away. Paths are shown as the machine knows them.
    void report(const std::optional<std::string>& message, bool isError);
    void dismiss();

Q_SIGNALS:
    void messageChanged();
    void isErrorChanged();

private:
    const MachineRoot& machineRoot_;
    std::optional<std::string> message_;
    bool isError_ = false;
};

} // namespace ventaro
