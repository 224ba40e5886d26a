#include "AtomicFile.h"
#include "ControllerFixture.h"
#include "HelperStatus.h"

#include <sys/stat.h>

namespace ventaro {
namespace {

using Code = HelperClientError::Code;
namespace fs = std::filesystem;

/// Takes scripts down and lets them end as the test says.
class RecordingScripts final : public AdministratorScripts {
public:
    std::optional<std::string> unavailableBecause() const override { return unavailable; }
    std::unique_ptr<AdministratorScript> compile(const std::string& source) override {
        sources.push_back(source);
        return compiles ? std::make_unique<Script>(*this) : nullptr;
    }

    std::vector<std::string> sources;
    std::optional<std::string> unavailable;
    bool compiles = true;
    std::optional<ScriptFailure> failure;

private:
    struct Script final : AdministratorScript {
        explicit Script(RecordingScripts& itsOwner) : owner(itsOwner) {}
        std::optional<ScriptFailure> execute() override { return owner.failure; }
        RecordingScripts& owner;
    };
};

class HelperInstallationTest : public ControllerFixture {
protected:
    HelperInstallationTest() {
        fs::create_directories(folder_.path() / "tmp");
        fs::create_directories(bundle_);
        writeFile(bundle_ / "VentaroHelper", "");
        fs::permissions(bundle_ / "VentaroHelper", fs::perms(0755));
    }
    HelperClient client() {
        return HelperClient(folder_.path() / "helper.sock", std::chrono::seconds(2),
                            std::chrono::seconds(2),
                            {root_,
                             {bundle_ / "Ventaro", resources_},
                             &scripts_,
                             [this](std::chrono::milliseconds time) {
                                 EXPECT_EQ(time, std::chrono::milliseconds(100));
                                 ++pauses_;
                                 onPause_();
                             }});
    }
    void expectFailure(Code code, const std::string& description) {
        try {
            client().installPrivilegedDaemon();
            ADD_FAILURE() << description;
        } catch (const HelperClientError& error) {
            EXPECT_EQ(error.code(), code);
            EXPECT_EQ(error.description(), description);
        }
    }

    RecordingScripts scripts_;
    fs::path bundle_ = folder_.path() / "it's \"a\\b\"";
    std::optional<fs::path> resources_;
    int pauses_ = 0;
    std::function<void()> onPause_ = [] {};
    const fs::path list_ = folder_.path() / "tmp/com.ventaro.helper.plist";
};

TEST_F(HelperInstallationTest, TheScriptsAreTheseBytes) {
    const mode_t umaskBefore = ::umask(077);
    fs::create_symlink(folder_.path() / "precious", list_);
    EXPECT_NO_THROW(client().installPrivilegedDaemon());
    ::umask(umaskBefore);
    const std::string bin = "'/Library/PrivilegedHelperTools/com.ventaro.helper'";
    const std::string plist = "'/Library/LaunchDaemons/com.ventaro.helper.plist'";
    const std::string source =
        "'" + folder_.path().string() + R"(/it'\\''s \"a\\b\"/VentaroHelper')";
    EXPECT_EQ(scripts_.sources.at(0),
              "do shell script \"mkdir -p /Library/PrivilegedHelperTools && cp -f " + source + " " +
                  bin + " && chown root:wheel " + bin + " && chmod 755 " + bin +
                  " && cp -f '/tmp/com.ventaro.helper.plist' " + plist + " && chown root:wheel " +
                  plist + " && chmod 644 " + plist + " && launchctl bootout system " + plist +
                  " 2>/dev/null || true && launchctl bootstrap system " + plist +
                  " || launchctl load -w " + plist + "\" with administrator privileges");
    EXPECT_EQ(pauses_, 0) << "it answers at once";
    EXPECT_FALSE(fs::is_symlink(list_));
    EXPECT_FALSE(fs::exists(folder_.path() / "precious"));
    EXPECT_EQ(fs::status(list_).permissions(), fs::perms(0644)) << "whatever the umask";

    client().uninstallPrivilegedDaemon();
    EXPECT_EQ(scripts_.sources.at(1), "do shell script \"" + bin +
                                          " --reset-all 2>/dev/null || true ; launchctl bootout "
                                          "system " +
                                          plist + " 2>/dev/null || launchctl unload " + plist +
                                          " 2>/dev/null || true ; rm -f " + plist + " " + bin +
                                          " '/var/run/com.ventaro.helper.sock'\" with "
                                          "administrator privileges");
}

TEST_F(HelperInstallationTest, EveryFailureHasItsCode) {
    scripts_.failure = ScriptFailure{};
    expectFailure(Code::scriptFailed,
                  "Administrator-Autorisierung abgebrochen oder fehlgeschlagen.");
    scripts_.failure = ScriptFailure{"cp: kein Platz"};
    expectFailure(Code::scriptFailed, "cp: kein Platz");
    scripts_.compiles = false;
    expectFailure(Code::scriptNotBuilt, "AppleScript Initialisierung fehlgeschlagen.");
    fs::remove_all(list_);
    fs::create_directories(list_ / "in the way");
    EXPECT_THROW(client().installPrivilegedDaemon(), FileError);
    EXPECT_EQ(scripts_.sources.size(), 3U) << "no step as administrator";
    fs::remove_all(list_);
    fs::permissions(bundle_ / "VentaroHelper", fs::perms(0644));
    expectFailure(Code::helperNotInBundle,
                  "VentaroHelper Binary wurde im App-Bundle nicht gefunden.");
    EXPECT_FALSE(fs::exists(list_)) << "nothing written";
    resources_ = folder_.path() / "resources";
    fs::create_directories(*resources_);
    fs::copy_file("/bin/true", *resources_ / "VentaroHelper");
    expectFailure(Code::scriptNotBuilt, "AppleScript Initialisierung fehlgeschlagen.");
    scripts_.unavailable = "Nicht hier.";
    expectFailure(Code::scriptFailed, "Nicht hier.");
    EXPECT_THROW(client().uninstallPrivilegedDaemon(), HelperClientError);
    EXPECT_EQ(scripts_.sources.size(), 4U);
}

TEST_F(HelperInstallationTest, WaitsForTheHelperToAnswer) {
    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("alt", 2); });
    expectFailure(Code::installedHelperSilent,
                  "Helper wurde installiert, antwortet aber noch nicht auf dem Socket.");
    EXPECT_EQ(helper_.taken().size(), 1 + 21U) << "the first one before anything is done";
    EXPECT_EQ(pauses_, 20);
    pauses_ = 0;
    onPause_ = [this] {
        if (pauses_ == 20) { // the very last question
            helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
        }
    };
    EXPECT_NO_THROW(client().installPrivilegedDaemon());
    EXPECT_EQ(helper_.taken().size(), 1 + 21U);

    const auto helperSince = [this](std::int64_t started) {
        helper_.setAnswer(
            [=](const HelperRequest&) { return RecordingHelper::acceptSince(started); });
    };
    helperSince(1);
    pauses_ = 0;
    onPause_ = [&] { // until then the one before is still about to end
        if (pauses_ == 3) {
            helperSince(2);
        }
    };
    EXPECT_NO_THROW(client().installPrivilegedDaemon());
    EXPECT_EQ(pauses_, 3);
}

TEST_F(HelperInstallationTest, TheHelperStatusTellsHowItWent) {
    const HelperClient installing = client();
    HelperStatus status(installing, applications(), tasks_);
    std::string told;
    QObject::connect(&status, &HelperStatus::uninstalled, [&] { told += "Weg. "; });
    QObject::connect(&status, &HelperStatus::reported,
                     [&](const std::optional<std::string>& line, bool isError) {
                         told += (isError ? "Fehler: " : "") + *line;
                     });
    const auto expect = [&](const std::string& expected, bool isInstalled) {
        tasks_.runAll();
        EXPECT_EQ(std::exchange(told, {}), expected);
        EXPECT_EQ(status.isInstalled(), isInstalled);
        EXPECT_FALSE(status.isInstalling());
    };
    const std::string asking = "Administrator-Freigabe für Hintergrund-Helper wird angefordert...";
    int answers = 0;
    helper_.setAnswer([&answers](const HelperRequest&) { // the last probe fails
        return ++answers <= 2 ? RecordingHelper::accept("gut") : std::string();
    });
    status.install();
    status.install();
    EXPECT_EQ(tasks_.waiting(), 1U) << "the second one does nothing";
    EXPECT_TRUE(status.isInstalling());
    expect(asking + "Hintergrund-Helper erfolgreich installiert und aktiv!", false);

    helper_.setAnswer([](const HelperRequest&) { return RecordingHelper::accept("gut"); });
    scripts_.failure = ScriptFailure{"Abgebrochen."};
    status.install();
    expect(asking + "Fehler: Abgebrochen.", true); // the old one is still there
    status.uninstall();
    expect("Fehler: Abgebrochen.", true);
    scripts_.failure.reset();
    helper_.taken();
    status.uninstall();
    expect("Weg. Hintergrund-Helper deinstalliert. Lüfter auf macOS-Automatik.", false);
    EXPECT_TRUE(helper_.taken().empty()) << "the script has reset the fans";
}

} // namespace
} // namespace ventaro
