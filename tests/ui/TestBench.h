#pragma once

#include "ControllerFixture.h"
#include "EmbeddedFiles.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>
#include <QUrl>
#include <functional>

namespace ventaro {

/// The real controller on a machine in this process, for QML to test views with. Nothing moves by
/// itself: telemetry comes with `tick`, tasks run with `runTasks`, and the helper keeps a record.
class TestBench : public QObject, private ControllerFixture {
    Q_OBJECT
    Q_PROPERTY(ventaro::FanControllerViewModel* viewModel READ viewModel CONSTANT)

public:
    TestBench() {
        constexpr std::chrono::seconds someAfternoon(1768487408); // 14:30:08, UTC
        clock().time += someAfternoon;
        host_.kernel.emplace(EmbeddedFiles::kernelValues);
        host_.version = "Version 11.7.10 (Build 20G1427)";
        setTemperatures(63.4, 52.1, 31.8);
        setFan(0, 2157, 2150, false);
        setFan(1, 2043, 2040, false);
        settled();
        audit_.reset();
    }
    FanControllerViewModel* viewModel() const { return controller_.get(); }

    /// What the helper was asked since the last call, once all tasks have run, but for pings.
    Q_INVOKABLE QStringList requests() {
        tasks_.runAll();
        QStringList requests;
        for (const std::string& line : helper_.taken()) {
            requests.append(QString::fromStdString(line));
        }
        requests.removeAll(QStringLiteral("ping"));
        return requests;
    }
    /// How many tasks wait.
    Q_INVOKABLE int waitingTasks() const { return static_cast<int>(tasks_.waiting()); }
    Q_INVOKABLE void runTasks() { tasks_.runAll(); }
    /// `seconds` pass, the timer ticks, and all that it starts is done.
    Q_INVOKABLE void tick(double seconds = 2) {
        clock().time += std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
        ControllerFixture::tick();
        tasks_.runAll();
    }

    /// What the machine says from the next tick on: °C, W, RPM.
    Q_INVOKABLE void setTemperatures(double cpu, double gpu, double watts) {
        setKey("TCXC", cpu);
        setKey("TGDD", gpu);
        setKey("PDTR", watts);
    }
    Q_INVOKABLE void setFan(int fan, double current, double target, bool forced) {
        setFanKeys(fan, {{"Ac", current}, {"Tg", target}, {"Md", forced ? 1 : 0}});
    }
    Q_INVOKABLE void setRange(int fan, double minimum, double maximum) {
        setFanKeys(fan, {{"Mn", minimum}, {"Mx", maximum}});
    }
    Q_INVOKABLE void setHelperAnswers(bool answers) {
        helper_.setAnswer([answers](const HelperRequest&) {
            return answers ? RecordingHelper::accept("gut") : std::string();
        });
        look();
    }
    /// A helper of this version, whose guard is up or not.
    Q_INVOKABLE void setHelper(const QString& build, bool isGuardUp) {
        const auto guard = isGuardUp ? std::optional(GuardCause::hot) : std::nullopt;
        helper_.setAnswer([guard, build = build.toStdString()](const HelperRequest&) {
            return encodeJson(HelperResponse{true, "gut", 1, guard, build});
        });
        look();
    }
    Q_INVOKABLE void setConflict(bool runs) {
        applications().list.clear();
        if (runs) {
            applications().list.push_back({"Macs Fan Control", "com.crystalidea.MacsFanControl"});
        }
        look();
    }
    /// What the profiler prints from its next run on; that of the simulated machine without one.
    Q_INVOKABLE void setProfile(const QString& json = {}) {
        host_.document = json.isEmpty() ? EmbeddedFiles::profile : json.toStdString();
    }
    /// From now on nothing can be put where the session looks for what to start.
    Q_INVOKABLE void blockLoginItem() { writeFile(folder_.path() / "home", "in the way"); }
    /// A new controller on what the old one has saved.
    Q_INVOKABLE void restart() { settled(); }
    Q_INVOKABLE int profilerRuns() const { return host_.runs; }

    /// The curve's temperatures and percents in stored order: the controller's, and what the last
    /// save has kept (empty before it).
    Q_INVOKABLE QList<QPointF> curve() const { return places(controller_->curvePoints()); }
    Q_INVOKABLE QList<QPointF> savedCurve() const {
        const auto data = session_.defaults->value<DefaultsData>("com.ventaro.pref.curvePoints");
        return data ? places(decodeCurvePoints(std::string(data->begin(), data->end())))
                    : QList<QPointF>();
    }
    /// A file with this text.
    Q_INVOKABLE QUrl file(const QString& text) const {
        const auto path = folder_.path() / "curve.json";
        writeFile(path, text.toStdString());
        return QUrl::fromLocalFile(QString::fromStdString(path.string()));
    }
    /// Takes this file in the dialog that asks for one; false if none does.
    Q_INVOKABLE bool chooseFile(const QUrl& file) const {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QFileDialog*>(widget)) {
                dialog->setDirectory(QFileInfo(file.toLocalFile()).path());
                dialog->selectFile(file.toLocalFile());
                return QMetaObject::invokeMethod(dialog, "accept");
            }
        }
        return false;
    }

    /// The first visible control, or else text, below `root` that assistive technology knows by
    /// this name; null without one.
    Q_INVOKABLE QQuickItem* named(QQuickItem* root, const QString& name) const {
        const auto isNamed = [&](QQuickItem* item) { return nameOf(item) == name; };
        QQuickItem* control = find(
            root, [&](QQuickItem* item) { return isNamed(item) && !item->inherits("QQuickText"); });
        return control != nullptr ? control : find(root, isNamed);
    }
    /// The first item below `root` that scrolls.
    Q_INVOKABLE QQuickItem* scrollPage(QQuickItem* root) const {
        return find(root, [](QQuickItem* item) { return item->inherits("QQuickFlickable"); });
    }
    /// Another window comes to the front of that of `item`, and goes again.
    Q_INVOKABLE void leaveAndReturn(QQuickItem* item) const {
        QWindow other;
        other.show();
        for (QWindow* window : {&other, static_cast<QWindow*>(item->window())}) {
            window->requestActivate();
            EXPECT_TRUE(waitUntil([&] {
                QCoreApplication::processEvents();
                return QGuiApplication::focusWindow() == window;
            }));
        }
    }
    Q_INVOKABLE QString clipboard() const { return QGuiApplication::clipboard()->text(); }
    /// The texts below `root` that are cut short, or end beyond its right edge.
    Q_INVOKABLE QStringList cutTexts(QQuickItem* root) const {
        return collect(root, [&](QQuickItem* item) {
            const qreal end = item->mapToItem(root, {item->width(), 0}).x();
            const bool isCut = item->property("truncated").toBool() || end > root->width() + 1 ||
                               item->property("contentWidth").toReal() > item->width() + 1;
            return isText(item) && isCut ? item->property("text").toString() : QString();
        });
    }
    /// All texts that are to be seen below `root`, in the order of their items.
    Q_INVOKABLE QStringList texts(QQuickItem* root) const {
        return collect(root, [](QQuickItem* item) {
            return isText(item) || item->inherits("ventaro::TabularText")
                       ? item->property("text").toString()
                       : QString();
        });
    }
    /// What assistive technology reads of a choice or switch, and of a slider.
    Q_INVOKABLE bool isChecked(QQuickItem* item) const {
        return accessible(item)->state().checked != 0;
    }
    Q_INVOKABLE double accessibleValue(QQuickItem* item) const {
        return accessible(item)->valueInterface()->currentValue().toDouble();
    }
    /// Has assistive technology do `action` ("Press", ...); whether `item` offers it.
    Q_INVOKABLE bool act(QQuickItem* item, const QString& action) const {
        accessible(item)->actionInterface()->doAction(action);
        return accessible(item)->actionInterface()->actionNames().contains(action);
    }
    /// What a person would have to say about the accessibility of what is below `root`: controls
    /// without a name.
    Q_INVOKABLE QStringList namelessControls(QQuickItem* root) const {
        return collect(root, [](QQuickItem* item) {
            const bool isControl = item->activeFocusOnTab() || (item->inherits("QQuickControl") &&
                                                                !item->inherits("QQuickScrollBar"));
            return isControl && nameOf(item).isEmpty()
                       ? QString::fromLatin1(item->metaObject()->className())
                       : QString();
        });
    }

private:
    static QList<QPointF> places(const std::vector<CurvePoint>& points) {
        QList<QPointF> places;
        for (const CurvePoint& point : points) {
            places.append({point.temperature, point.speedPercent});
        }
        return places;
    }
    /// The first visible item below `root` for which `isFound` returns true.
    static QQuickItem* find(QQuickItem* root, const std::function<bool(QQuickItem*)>& isFound) {
        if (root == nullptr || !root->isVisible() || root->opacity() == 0) {
            return nullptr;
        }
        QQuickItem* found = isFound(root) ? root : nullptr;
        const auto children = root->childItems();
        for (auto child = children.begin(); found == nullptr && child != children.end(); ++child) {
            found = find(*child, isFound);
        }
        return found;
    }
    /// What `tell` says of all visible items below `root`, but for nothing.
    static QStringList collect(QQuickItem* root, const std::function<QString(QQuickItem*)>& tell) {
        QStringList told;
        find(root, [&](QQuickItem* item) {
            told.append(tell(item));
            return false;
        });
        told.removeAll(QString());
        return told;
    }
    static QAccessibleInterface* accessible(QQuickItem* item) {
        return QAccessible::queryAccessibleInterface(item);
    }
    static QString nameOf(QQuickItem* item) {
        return accessible(item) != nullptr ? accessible(item)->text(QAccessible::Name) : QString();
    }
    static bool isText(const QQuickItem* item) {
        return item->inherits("QQuickText") || item->inherits("QQuickTextEdit");
    }

    void setFanKeys(int fan, const std::map<std::string, double>& values) {
        for (const auto& [key, value] : values) {
            setKey("F" + std::to_string(fan) + key, value);
        }
    }
    /// Has the controller look for the helper and for competitors.
    void look() {
        controller_->checkHelperAndConflictsAsync();
        tasks_.runAll();
    }
    void TestBody() override {}
};

} // namespace ventaro
