#pragma once

#include "BlankHost.h"
#include "FanControllerViewModel.h"
#include "FileDefaults.h"
#include "HelperClient.h"
#include "InProcessMachine.h"
#include "ManualSession.h"
#include "ManualTasks.h"
#include "PropertyAudit.h"
#include "RecordingHelper.h"
#include "TestSupport.h"
#include "UserSession.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ventaro {

/// Handles events until the condition holds; false after a minute.
inline bool processUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
        QCoreApplication::processEvents();
        return condition();
    });
}

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
