#include "Appearance.h"
#include "Popover.h"
#include "ShellColors.h"
#include "ShellFixture.h"
#include "WindowSizeFile.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QJSValue>
#include <QQmlComponent>
#include <QQuickItem>
#include <QWindow>
#include <algorithm>

namespace ventaro {
namespace {

class WindowsTest : public ShellFixture {};

constexpr const char* statusWindow = "Lüfterstatus";
constexpr const char* popoverWindow = "Lüfter und";

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
            ASSERT_TRUE(opensDashboard(app));
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
        ASSERT_TRUE(opensDashboard(app));
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
        ASSERT_TRUE(opensDashboard(app));
        EXPECT_EQ(app.shell().dashboard()->window().size(), QSize(700, 600));
    });
}

TEST_F(WindowsTest, ThePopoverIsNoMainWindow) {
    grace_ = std::chrono::milliseconds(1);
    run({"--minimized"}, [&](VentaroApp& app) {
        ASSERT_TRUE(appears(statusWindow));
        const auto click = [&] {
            Q_EMIT app.statusItem().pressed();
            Q_EMIT app.statusItem().activated(windowTitled(statusWindow)->geometry());
        };
        click();
        ASSERT_TRUE(appears(popoverWindow));
        for (const QWindow* window : QGuiApplication::allWindows()) {
            EXPECT_FALSE(window->title().contains("Ventaro")) << window->title().toStdString();
        }
        click();
        EXPECT_FALSE(app.popover().isOpen());
        settle();
        click();
        ASSERT_TRUE(hasFocus(popoverWindow));
        windowTitled(popoverWindow)->close(); // as the window manager does
        EXPECT_FALSE(app.popover().isOpen());
        EXPECT_TRUE(processUntil([] {
            const auto all = QGuiApplication::allWindows();
            return std::none_of(all.begin(), all.end(), [](const QWindow* window) {
                return window->title().startsWith(popoverWindow);
            });
        })) << "it is freed";
        settle();
        click();
        ASSERT_TRUE(hasFocus(popoverWindow));
        // A click on the item takes the focus first.
        windowTitled(statusWindow)->requestActivate();
        ASSERT_TRUE(processUntil([&] { return !app.popover().isOpen(); }));
        click();
        EXPECT_FALSE(app.popover().isOpen());
        EXPECT_EQ(app.shell().activationPolicy(), ActivationPolicy::accessory);
        app.reopen();
        EXPECT_TRUE(opensDashboard(app));
    });
}

TEST_F(WindowsTest, TheStatusItemTellsOfTheMachineAndAScreenReaderFindsIt) {
    for (const char* note : {"", "Kein AppleSMC gefunden"}) {
        note_ = note;
        run({"--minimized"}, [&](VentaroApp& app) {
            const QAction* first = app.statusItem().menu().menu().actions().constFirst();
            EXPECT_EQ(first->text() == note_, !note_.isEmpty());
            EXPECT_FALSE(first->isEnabled());

            ASSERT_TRUE(appears(statusWindow));
            QAccessibleInterface* program = QAccessible::queryAccessibleInterface(qApp);
            QAccessibleInterface* item =
                program->child(program->indexOfChild(windowTitled(statusWindow)->accessibleRoot()));
            ASSERT_NE(item, nullptr);
            EXPECT_EQ(item->role(), QAccessible::Button);
            EXPECT_EQ(item->text(QAccessible::Name), app.viewModel().menuBarSummaryText());
            EXPECT_EQ(item->rect(), windowTitled(statusWindow)->geometry());
            item->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            auto* popover = qobject_cast<QQuickView*>(windowTitled(popoverWindow));
            ASSERT_NE(popover, nullptr);
            EXPECT_EQ(popover->rootObject()->property("machineNote").toString(), note_);
        });
    }
}

TEST(ShellColorsTest, AreTheThemes) {
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData(R"(
        import QtQml
        import Ventaro.Style
        QtObject {
            property var colors: [Theme.popover, Theme.popoverBorder, Theme.textPrimary, Theme.focus]
        })",
                      QUrl());
    for (const bool dark : {true, false}) {
        Appearance::shared().setDark(dark);
        const std::unique_ptr<QObject> theme(component.create());
        qsizetype at = 0;
        ASSERT_NE(theme, nullptr) << component.errorString().toStdString();
        const auto colors = theme->property("colors").value<QJSValue>().toVariant().toList();
        const ShellColors own = ShellColors::current();
        for (const QColor& color : {own.popover, own.popoverBorder, own.textPrimary, own.focus}) {
            EXPECT_EQ(colors.value(at++).value<QColor>().rgba(), color.rgba()) << dark;
        }
    }
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
    const std::pair<QRect, QPoint> rows[] = {
        {{700, 0, 40, 24}, {554, 28}},      // below a panel at the top
        {{1340, 776, 24, 24}, {1050, 288}}, // above one at the bottom
        {{100, 300, 24, 24}, {100, 0}},     // neither has room
        {{5000, 5000, 1, 1}, {1050, 316}}}; // a screen that is gone
    for (const auto& [place, position] : rows) {
        EXPECT_EQ(popoverPosition(place, QSize(330, 484), QRect(100, 0, 1280, 800)), position)
            << place.x();
    }
}

} // namespace
} // namespace ventaro
