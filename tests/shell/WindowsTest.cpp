#include "Popover.h"
#include "ShellFixture.h"
#include "WindowSizeFile.h"

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>

namespace ventaro {
namespace {

class WindowsTest : public ShellFixture {};

QWindow* windowTitled(const char* title) {
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (window->title().startsWith(QString::fromUtf8(title)) && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

TEST_F(WindowsTest, AfterAMinimisedStartTheDashboardComesAndStays) {
    run({"--minimized"}, [&](VentaroApp& app) {
        EXPECT_EQ(app.shell().dashboard(), nullptr);
        EXPECT_EQ(app.shell().activationPolicy(), ActivationPolicy::accessory);
        const std::function<void()> ways[] = {
            [&] { Q_EMIT app.popover().openDashboardRequested(); },
            [&] { choose(app, "Dashboard"); },
            [&] { app.reopen(); },
            [&] {
                app.reopen();
                app.reopen();
            },
        };
        for (const auto& open : ways) {
            open();
            ASSERT_TRUE(processUntil([&] { return app.shell().isDashboardVisible(); }));
            settle();
            EXPECT_TRUE(app.shell().isDashboardVisible());
            EXPECT_TRUE(app.shell().dashboard()->window().isActive());
            EXPECT_EQ(app.shell().activationPolicy(), ActivationPolicy::regular);
            app.shell().dashboard()->window().close(); // as the window manager does
            settle();
            EXPECT_FALSE(app.shell().isDashboardVisible());
            EXPECT_EQ(app.shell().activationPolicy(), ActivationPolicy::accessory);
        }
    });
}

TEST_F(WindowsTest, AClosedDashboardIsFreedAndForgotByNobody) {
    grace_ = std::chrono::milliseconds(1);
    run({}, [&](VentaroApp& app) {
        ASSERT_TRUE(processUntil([&] { return app.shell().isDashboardVisible(); }));
        EXPECT_EQ(app.shell().dashboard()->title().toStdString(),
                  "Ventaro — MacBook Pro 16\" Thermal & Fan Control");
        app.viewModel().setSensorsTabVisible(true);
        app.viewModel().setOverviewTabVisible(false);
        app.shell().dashboard()->window().resize(700, 600);
        app.shell().dashboard()->close();
        ASSERT_TRUE(processUntil([&] { return app.shell().dashboard() == nullptr; }));
        EXPECT_TRUE(app.viewModel().isSensorsTabVisible());
        EXPECT_FALSE(app.viewModel().isOverviewTabVisible());
        app.reopen();
        ASSERT_TRUE(processUntil([&] { return app.shell().isDashboardVisible(); }));
        EXPECT_EQ(app.shell().dashboard()->window().size(), QSize(700, 600));
    });
}

TEST_F(WindowsTest, ThePopoverIsNoMainWindow) {
    grace_ = std::chrono::milliseconds(1);
    run({"--minimized"}, [&](VentaroApp& app) {
        ASSERT_TRUE(processUntil([&] { return windowTitled("Lüfterstatus") != nullptr; }));
        StatusItem& item = app.statusItem();
        const auto click = [&] {
            Q_EMIT item.pressed();
            Q_EMIT item.activated(windowTitled("Lüfterstatus")->geometry());
        };
        click();
        ASSERT_TRUE(processUntil([&] { return windowTitled("Lüfter und") != nullptr; }));
        for (const QWindow* window : QGuiApplication::allWindows()) {
            EXPECT_FALSE(window->title().contains("Ventaro")) << window->title().toStdString();
        }
        click();
        EXPECT_FALSE(app.popover().isOpen());
        settle();
        click();
        ASSERT_TRUE(processUntil([&] { return windowTitled("Lüfter und") != nullptr; }));
        ASSERT_TRUE(processUntil(
            [&] { return QGuiApplication::focusWindow() == windowTitled("Lüfter und"); }));
        // A click on the item takes the focus first.
        QWindow* other = windowTitled("Lüfterstatus");
        other->requestActivate();
        ASSERT_TRUE(processUntil([&] { return !app.popover().isOpen(); }));
        click();
        EXPECT_FALSE(app.popover().isOpen());
        EXPECT_EQ(app.shell().activationPolicy(), ActivationPolicy::accessory);
        app.reopen();
        EXPECT_TRUE(processUntil([&] { return app.shell().isDashboardVisible(); }));
    });
}

TEST(WindowSizeFileTest, KeepsOnlyWhatIsASize) {
    const TemporaryFolder folder;
    const WindowSizeFile file(folder.path() / "new/size");
    EXPECT_EQ(file.read(), std::nullopt);
    file.write({1000, 700});
    EXPECT_EQ(file.read(), QSize(1000, 700));
    for (const char* bad : {"", "980", "980x", "980x680", "980x680\nx", "-5x700\n", "0x0\n",
                            "99999999999x1\n", "1x1x1\n", "980X680\n", "nanxnan\n"}) {
        writeFile(folder.path() / "new/size", bad);
        EXPECT_EQ(file.read(), std::nullopt) << bad;
    }
    const QSize minimum(620, 480);
    EXPECT_EQ(fittedSize({2000, 600}, minimum, {1440, 900}), QSize(1440, 600));
    EXPECT_EQ(fittedSize({100, 700}, minimum, {500, 400}), minimum);
}

TEST(PopoverPosition, IsBesideTheItemAndOnTheScreen) {
    struct Row {
        QRect place;
        QPoint position;
    };
    const QRect screen(100, 0, 1280, 800);
    const QSize size(330, 484);
    const Row rows[] = {{{700, 0, 40, 24}, {554, 28}},      // below a panel at the top
                        {{1340, 776, 24, 24}, {1050, 288}}, // above one at the bottom
                        {{100, 300, 24, 24}, {100, 0}},     // neither has room
                        {{5000, 5000, 1, 1}, {1050, 316}}}; // a screen that is gone
    for (const Row& row : rows) {
        EXPECT_EQ(popoverPosition(row.place, size, screen), row.position) << row.place.x();
    }
}

} // namespace
} // namespace ventaro
