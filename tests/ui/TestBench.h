#pragma once

#include "ControllerFixture.h"

#include <QColor>
#include <QQmlEngine>
#include <QQuickItem>
#include <QStringList>
#include <QUrl>

namespace ventaro {

/// The real controller on a machine in this process, for QML to test views with. Nothing moves by
/// itself: telemetry comes with `tick`, tasks run with `runTasks`, and the helper keeps a record.
class TestBench : public QObject, private ControllerFixture {
    Q_OBJECT
    Q_PROPERTY(ventaro::FanControllerViewModel* viewModel READ viewModel CONSTANT)

public:
    TestBench();
    ~TestBench() override;

    FanControllerViewModel* viewModel() const { return controller_.get(); }

    /// What the helper was asked since the last call, once all tasks have run, but for pings.
    Q_INVOKABLE QStringList requests();
    /// How many tasks wait.
    Q_INVOKABLE int waitingTasks() const { return static_cast<int>(tasks_.waiting()); }
    Q_INVOKABLE void runTasks() { tasks_.runAll(); }
    /// `seconds` pass, the timer ticks, and all that it starts is done.
    Q_INVOKABLE void tick(double seconds = 2);

    /// What the machine says from the next tick on: °C, W, RPM.
    Q_INVOKABLE void setTemperatures(double cpu, double gpu, double watts);
    Q_INVOKABLE void setFan(int fan, double current, double target, bool forced);
    Q_INVOKABLE void setRange(int fan, double minimum, double maximum);
    Q_INVOKABLE void setHelperAnswers(bool answers);
    Q_INVOKABLE void setConflict(bool runs);
    /// What the profiler prints from its next run on; that of the simulated machine without one.
    Q_INVOKABLE void setProfile(const QString& json = {});
    /// From now on nothing can be put where the session looks for what to start.
    Q_INVOKABLE void blockLoginItem();
    /// A new controller on what the old one has saved.
    Q_INVOKABLE void restart() { settled(); }
    Q_INVOKABLE int profilerRuns() const { return host_.runs; }

    /// The curve's temperatures and percents in stored order: the controller's, and what the last
    /// save has kept (empty before it).
    Q_INVOKABLE QList<QPointF> curve() const;
    Q_INVOKABLE QList<QPointF> savedCurve() const;
    /// A file with this text.
    Q_INVOKABLE QUrl file(const QString& text) const;
    /// Takes this file in the dialog that asks for one; false if none does.
    Q_INVOKABLE bool chooseFile(const QUrl& file) const;

    /// The first visible control, or else text, below `root` that assistive technology knows by
    /// this name; null without one.
    Q_INVOKABLE QQuickItem* named(QQuickItem* root, const QString& name) const;
    /// The first item below `root` that scrolls.
    Q_INVOKABLE QQuickItem* scrollPage(QQuickItem* root) const;
    Q_INVOKABLE QString clipboard() const;
    /// The texts below `root` that are cut short, or end beyond its right edge.
    Q_INVOKABLE QStringList cutTexts(QQuickItem* root) const;
    /// All texts that are to be seen below `root`, in the order of their items.
    Q_INVOKABLE QStringList texts(QQuickItem* root) const;
    /// What assistive technology reads of a choice or switch, and of a slider.
    Q_INVOKABLE bool isChecked(QQuickItem* item) const;
    Q_INVOKABLE double accessibleValue(QQuickItem* item) const;
    /// Has assistive technology do `action` ("Press", ...); whether `item` offers it.
    Q_INVOKABLE bool act(QQuickItem* item, const QString& action) const;
    /// What a person would have to say about the accessibility of what is below `root`: controls
    /// without a name.
    Q_INVOKABLE QStringList namelessControls(QQuickItem* root) const;

private:
    void TestBody() override {}
};

} // namespace ventaro
