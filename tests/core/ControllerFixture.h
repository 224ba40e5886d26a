#pragma once

#include "BlankHost.h"
#include "FanControllerViewModel.h"
#include "FileDefaults.h"
#include "FileDescriptor.h"
#include "InProcessMachine.h"
#include "JsonObject.h"
#include "NumberFormat.h"
#include "TestSupport.h"
#include "UnixSocket.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QVariant>
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ventaro {

/// Tasks that run when the test says so, on its own thread, one after the other.
class ManualTasks final : public TaskRunner {
public:
    void detach(TaskPriority /*priority*/, Work work) override { work_.push_back(std::move(work)); }
    void onMainThread(Action action) override { actions_.push_back(std::move(action)); }
    /// Runs the work of task number `index`, without its result reaching the main thread.
    void work(std::size_t index = 0) {
        const auto work = std::move(work_.at(index));
        work_.erase(work_.begin() + static_cast<std::ptrdiff_t>(index));
        actions_.push_back(work());
    }
    void deliver() {
        for (; !actions_.empty(); actions_.pop_front()) {
            actions_.front()();
        }
    }
    void runAll() {
        while (!work_.empty() || !actions_.empty()) {
            if (!work_.empty()) {
                work();
            }
            deliver();
        }
    }
    std::size_t waiting() const { return work_.size(); }

private:
    std::deque<Work> work_;
    std::deque<Action> actions_;
};

/// A clock that ticks when the test says so.
class ManualClock final : public Clock {
public:
    std::chrono::system_clock::time_point now() const override { return time; }
    std::unique_ptr<Ticker> ticker(std::chrono::milliseconds interval) override {
        intervals.push_back(interval);
        descriptor_ = std::make_shared<FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        return std::make_unique<EventTicker>(descriptor_);
    }
    void tick() const {
        const std::uint64_t one = 1;
        ASSERT_EQ(::write(descriptor_->get(), &one, sizeof one), sizeof one);
    }

    std::chrono::system_clock::time_point time;
    std::vector<std::chrono::milliseconds> intervals;

private:
    struct EventTicker final : Ticker {
        explicit EventTicker(std::shared_ptr<FileDescriptor> event)
            : descriptor_(std::move(event)) {}
        int descriptor() const override { return descriptor_->get(); }
        void acknowledge() override {
            std::uint64_t count = 0;
            [[maybe_unused]] const ssize_t bytes = ::read(descriptor_->get(), &count, sizeof count);
        }
        std::shared_ptr<FileDescriptor> descriptor_;
    };
    std::shared_ptr<FileDescriptor> descriptor_;
};

struct ListedApplications final : RunningApplications {
    void refresh() override { seen = std::make_shared<List>(list); }
    std::shared_ptr<const List> current() const override { return seen; }
    List list;
    std::shared_ptr<const List> seen = std::make_shared<List>();
};

/// A helper that keeps a record of its requests and answers as it is told, each on a thread.
class RecordingHelper {
public:
    /// Returns the response's bytes; empty closes the connection without one, `hang` keeps it until
    /// the client gives up.
    using Answer = std::function<std::string(const HelperRequest&)>;
    static constexpr const char* hang = "hang";

    explicit RecordingHelper(const std::filesystem::path& path)
        : listener_(listenOnUnixSocket(path, SOCK_STREAM, 0600)),
          stop_(::eventfd(0, EFD_CLOEXEC)),
          thread_([this] { serve(); }) {}
    ~RecordingHelper() {
        const std::uint64_t one = 1;
        EXPECT_EQ(::write(stop_.get(), &one, sizeof one), sizeof one);
        thread_.join();
        for (std::thread& exchange : exchanges_) {
            exchange.join();
        }
    }

    static std::string accept(const std::string& message, std::int64_t version = 1) {
        return encodeJson(HelperResponse{true, message, version});
    }
    static std::string refuse(const std::string& message) {
        return encodeJson(HelperResponse{false, message, 1});
    }
    void setAnswer(Answer answer) {
        const std::lock_guard guard(lock_);
        answer_ = std::move(answer);
    }
    /// What was asked since the last call: "ping", "set 0 2370", "reset", with " meanwhile" if a
    /// client was still waiting for an answer that hangs.
    std::vector<std::string> taken() {
        const std::lock_guard guard(lock_);
        return std::exchange(requests_, {});
    }

private:
    static std::string describe(const HelperRequest& request) {
        switch (request.action) {
        case HelperAction::ping:
            return "ping";
        case HelperAction::setFanRPM:
            return "set " + std::to_string(*request.fanIndex) + " " + formatWhole(*request.rpm);
        case HelperAction::resetAllAuto:
            return "reset";
        case HelperAction::resetFanAuto:
            break;
        }
        return "?";
    }
    Answer record(std::string line) {
        const std::lock_guard guard(lock_);
        pollfd entry{hung_.get(), POLLIN, 0};
        if (hung_ && ::poll(&entry, 1, 0) == 0) {
            line += " meanwhile";
        }
        requests_.push_back(std::move(line));
        return answer_;
    }
    void hangOn(int client) {
        {
            const std::lock_guard guard(lock_);
            hung_.reset(::dup(client));
        }
        char byte = 0;
        ::recv(client, &byte, 1, 0);
    }
    void serve() {
        for (;;) {
            pollfd entries[] = {{listener_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}};
            ::poll(entries, 2, -1);
            if (entries[1].revents != 0) {
                return;
            }
            exchanges_.emplace_back([this, socket = ::accept(listener_.get(), nullptr, nullptr)] {
                exchange(FileDescriptor(socket));
            });
        }
    }
    void exchange(const FileDescriptor& client) {
        std::string text(maximumHelperMessageSize, '\0');
        const ssize_t count = ::recv(client.get(), text.data(), text.size(), 0);
        if (count <= 0) {
            return; // nothing was asked in the end
        }
        text.resize(static_cast<std::size_t>(count));
        const HelperRequest request = decodeHelperRequest(text);
        const std::string response = record(describe(request))(request);
        if (response == hang) {
            hangOn(client.get());
            return;
        }
        ::send(client.get(), response.data(), response.size(), MSG_NOSIGNAL);
    }

    FileDescriptor listener_;
    FileDescriptor stop_;
    std::mutex lock_; ///< guards the three fields below
    Answer answer_ = [](const HelperRequest&) { return accept("gut"); };
    std::vector<std::string> requests_;
    FileDescriptor hung_;                ///< the connection that hangs
    std::vector<std::thread> exchanges_; ///< of `thread_` until that has ended
    std::thread thread_;
};

/// Watches that every property's change signal is heard exactly when its value has changed.
class PropertyAudit : public QObject {
    Q_OBJECT
public:
    explicit PropertyAudit(QObject& audited) : audited_(audited) {
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("heard()"));
        for (int index = 0; index < audited.metaObject()->propertyCount(); ++index) {
            const QMetaProperty property = audited.metaObject()->property(index);
            values_.push_back(property.read(&audited));
            if (property.hasNotifySignal()) {
                connect(&audited, property.notifySignal(), this, slot, Qt::UniqueConnection);
            }
        }
    }
    ~PropertyAudit() override {
        for (std::size_t index = 0; index < values_.size(); ++index) {
            const QMetaProperty property = audited_.metaObject()->property(static_cast<int>(index));
            EXPECT_TRUE(property.read(&audited_) == values_[index])
                << property.name() << " has changed in silence";
        }
    }

    Q_SLOT void heard() {
        bool hasChanged = false;
        for (std::size_t index = 0; index < values_.size(); ++index) {
            const QMetaProperty property = audited_.metaObject()->property(static_cast<int>(index));
            if (property.notifySignalIndex() == senderSignalIndex()) {
                QVariant value = property.read(&audited_);
                hasChanged = hasChanged || value != values_[index];
                values_[index] = std::move(value);
            }
        }
        EXPECT_TRUE(hasChanged)
            << audited_.metaObject()->method(senderSignalIndex()).name().toStdString()
            << " without a change";
    }

private:
    QObject& audited_;
    std::vector<QVariant> values_;
};

/// A controller on a simulated machine in this process, with a helper that only keeps a record.
class ControllerFixture : public testing::Test {
protected:
    ControllerFixture() {
        session_.clock = std::make_unique<ManualClock>();
        session_.runningApplications = std::make_unique<ListedApplications>();
        session_.loginItem = {LoginMechanism::launchAgent,
                              folder_.path() / "home/Library/LaunchAgents/com.ventaro.app.plist"};
        session_.bundle.executable = "/opt/Ventaro/Ventaro";
        openStore();
        for (const std::string key : {"TCXC", "TGDD"}) { // fine enough for every threshold
            machine_.smc.faults().add(key + " type \"flt \"");
            machine_.smc.faults().add(key + " size 4");
            setKey(key, 40);
        }
    }

    void openStore() {
        session_.defaults =
            std::make_unique<FileDefaults>(folder_.path() / "settings.cbor",
                                           [](const std::string& line) { ADD_FAILURE() << line; });
    }
    FanControllerViewModel& make() {
        audit_.reset();
        controller_ = std::make_unique<FanControllerViewModel>(FanControllerDependencies{
            machine_.service, client_, inspector_, root_, session_, tasks_});
        audit_ = std::make_unique<PropertyAudit>(*controller_);
        return *controller_;
    }
    /// Makes a controller and lets it finish all that it begins with.
    FanControllerViewModel& settled() {
        make();
        tasks_.runAll();
        helper_.taken();
        machine_.taken();
        return *controller_;
    }
    /// A tick as the timer makes it, without what it starts in the background.
    void tick() {
        clock().tick();
        QCoreApplication::processEvents();
        tasks_.deliver(); // what the timer has put behind
    }
    void refresh() {
        controller_->refreshTelemetryAsync(false);
        tasks_.runAll();
    }
    std::string status() const { return controller_->statusMessage().value_or("(absent)"); }
    void expectStatus(const std::string& text, bool isError) const {
        EXPECT_EQ(status(), text);
        EXPECT_EQ(controller_->isErrorStatus(), isError);
    }
    /// Has the SMC say `value` for `key`, in the key's own type.
    void setKey(const std::string& key, double value) {
        const std::string type = machine_.service.readKeyRaw(key).type;
        if (type == "sp78") { // which is never written
            const auto fixed = static_cast<std::int16_t>(value * 256);
            setRaw(key, std::vector<std::uint8_t>{static_cast<std::uint8_t>(fixed >> 8),
                                                  static_cast<std::uint8_t>(fixed)});
            return;
        }
        setRaw(key, SMCService::encodeValue(type, value));
    }
    void setRaw(const std::string& key, std::span<const std::uint8_t> bytes) {
        std::string hex;
        for (const std::uint8_t byte : bytes) {
            constexpr const char* digits = "0123456789ABCDEF";
            hex += {digits[byte >> 4U], digits[byte & 0xFU]};
        }
        machine_.smc.faults().add(key + " value " + hex);
    }
    void setLimits(double min0, double max0, double min1, double max1) {
        setKey("F0Mn", min0);
        setKey("F0Mx", max0);
        setKey("F1Mn", min1);
        setKey("F1Mx", max1);
    }
    ManualClock& clock() { return static_cast<ManualClock&>(*session_.clock); }
    ListedApplications& applications() {
        return static_cast<ListedApplications&>(*session_.runningApplications);
    }

    TemporaryFolder folder_;
    InProcessMachine machine_{{}, false};
    RecordingHelper helper_{folder_.path() / "helper.sock"};
    HelperClient client_{folder_.path() / "helper.sock"};
    BlankHost host_;
    SystemHardwareInspector inspector_{host_};
    MachineRoot root_{folder_.path()};
    UserSession session_;
    ManualTasks tasks_;
    std::unique_ptr<FanControllerViewModel> controller_;
    std::unique_ptr<PropertyAudit> audit_;
};

} // namespace ventaro
