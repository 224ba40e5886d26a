#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ventaro {

class ExclusiveRole;
class MachineRoot;

/// Which of a user's programs steers the fans: one at a time, from its first forcing wish until it
/// has handed them back. Where there can be no such order (its folder cannot be used), everybody
/// may. Main thread only.
class ControlHolder : public QObject {
    Q_OBJECT

public:
    /// `program` is what the others call this one.
    ControlHolder(const MachineRoot& root, std::string program);
    ~ControlHolder() override;

    bool isMine() const;
    /// What the holder keeps locked; empty where there can be no order.
    std::filesystem::path lock() const;
    /// Becomes the holder; or else says who is, as in "Ventaro (PID 123)". Blocks, for two seconds
    /// if that one does not answer.
    std::optional<std::string> claim();
    void release();

    /// Who else steers the fans; no value if nobody does. Blocks like `claim`.
    std::optional<std::string> other() const;
    /// What finds that out; any thread, also when this object is gone.
    std::function<std::optional<std::string>()> lookForOther() const;
    /// What asks whoever else steers them to let go, and returns whether it has within four
    /// seconds, or nobody did. Blocks then; any thread, also when this object is gone.
    std::function<bool()> otherLettingGo() const;

Q_SIGNALS:
    /// The program `by` wants to steer, or somebody wants the automatic control: `release` is
    /// expected as soon as no request is on its way any more.
    void letGoRequested(const std::string& by);

private:
    std::optional<std::string> answer(std::string_view line);

    const std::string self_;
    const std::unique_ptr<ExclusiveRole> role_; ///< null where there can be none
};

} // namespace ventaro
