#include "TestBench.h"

#include "EmbeddedFiles.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <fstream>
#include <functional>

namespace ventaro {

namespace {

/// Calls `visit` with every visible item below `root` until one call returns true.
QQuickItem* walk(QQuickItem* root, const std::function<bool(QQuickItem*)>& visit) {
    if (root == nullptr || !root->isVisible() || root->opacity() == 0) {
        return nullptr;
    }
    if (visit(root)) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = walk(child, visit)) {
            return found;
        }
    }
    return nullptr;
}

QString nameOf(QQuickItem* item) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item);
    return accessible != nullptr ? accessible->text(QAccessible::Name) : QString();
}

} // namespace

TestBench::TestBench() {
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

TestBench::~TestBench() = default;

QStringList TestBench::requests() {
    tasks_.runAll();
    QStringList requests;
    for (const std::string& line : helper_.taken()) {
        if (line != "ping") {
            requests.append(QString::fromStdString(line));
        }
    }
    return requests;
}

void TestBench::tick(double seconds) {
    clock().time += std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
    ControllerFixture::tick();
    tasks_.runAll();
}

void TestBench::setTemperatures(double cpu, double gpu, double watts) {
    setKey("TCXC", cpu);
    setKey("TGDD", gpu);
    setKey("PDTR", watts);
}

void TestBench::setFan(int fan, double current, double target, bool forced) {
    const std::string prefix = "F" + std::to_string(fan);
    setKey(prefix + "Ac", current);
    setKey(prefix + "Tg", target);
    setKey(prefix + "Md", forced ? 1 : 0);
}

void TestBench::setRange(int fan, double minimum, double maximum) {
    const std::string prefix = "F" + std::to_string(fan);
    setKey(prefix + "Mn", minimum);
    setKey(prefix + "Mx", maximum);
}

void TestBench::setHelperAnswers(bool answers) {
    helper_.setAnswer([answers](const HelperRequest&) {
        return answers ? RecordingHelper::accept("gut") : std::string();
    });
    controller_->checkHelperAndConflictsAsync();
    tasks_.runAll();
}

void TestBench::setConflict(bool runs) {
    applications().list = {};
    if (runs) {
        applications().list.push_back({"Macs Fan Control", "com.crystalidea.MacsFanControl"});
    }
    controller_->checkHelperAndConflictsAsync();
    tasks_.runAll();
}

namespace {

QList<QPointF> places(const std::vector<CurvePoint>& points) {
    QList<QPointF> places;
    for (const CurvePoint& point : points) {
        places.append({point.temperature, point.speedPercent});
    }
    return places;
}

} // namespace

QList<QPointF> TestBench::curve() const { return places(controller_->curvePoints()); }

QList<QPointF> TestBench::savedCurve() const {
    const auto data = session_.defaults->value<DefaultsData>("com.ventaro.pref.curvePoints");
    return data ? places(decodeCurvePoints({reinterpret_cast<const char*>(data->data()), // NOLINT
                                            data->size()}))
                : QList<QPointF>();
}

QUrl TestBench::file(const QString& text) const {
    const auto path = folder_.path() / "curve.json";
    std::ofstream(path) << text.toStdString();
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

void TestBench::setProfile(const QString& json) {
    host_.document = json.isEmpty() ? EmbeddedFiles::profile : json.toStdString();
}

void TestBench::blockLoginItem() { std::ofstream(folder_.path() / "home") << "in the way"; }

QStringList TestBench::cutTexts(QQuickItem* root) const {
    QStringList cut;
    walk(root, [&](QQuickItem* item) {
        const bool isText = item->inherits("QQuickText") || item->inherits("QQuickTextEdit");
        const qreal end = item->mapToItem(root, {item->width(), 0}).x();
        if (isText && (item->property("truncated").toBool() || end > root->width() + 1 ||
                       item->property("contentWidth").toReal() > item->width() + 1)) {
            cut.append(item->property("text").toString());
        }
        return false;
    });
    return cut;
}

QString TestBench::clipboard() const { return QGuiApplication::clipboard()->text(); }

QQuickItem* TestBench::scrollPage(QQuickItem* root) const {
    return walk(root, [](QQuickItem* item) { return item->inherits("QQuickFlickable"); });
}

bool TestBench::chooseFile(const QUrl& file) const {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QFileDialog*>(widget)) {
            dialog->setDirectory(QFileInfo(file.toLocalFile()).path());
            dialog->selectFile(file.toLocalFile());
            return QMetaObject::invokeMethod(dialog, "accept");
        }
    }
    return false;
}

QQuickItem* TestBench::named(QQuickItem* root, const QString& name) const {
    QQuickItem* control = walk(root, [&](QQuickItem* item) {
        return nameOf(item) == name && !item->inherits("QQuickText");
    });
    return control != nullptr ? control
                              : walk(root, [&](QQuickItem* item) { return nameOf(item) == name; });
}

QStringList TestBench::texts(QQuickItem* root) const {
    QStringList texts;
    walk(root, [&](QQuickItem* item) {
        const bool isText = item->inherits("QQuickText") || item->inherits("QQuickTextEdit") ||
                            item->inherits("ventaro::TabularText");
        if (isText && !item->property("text").toString().isEmpty()) {
            texts.append(item->property("text").toString());
        }
        return false;
    });
    return texts;
}

bool TestBench::isChecked(QQuickItem* item) const {
    return QAccessible::queryAccessibleInterface(item)->state().checked != 0;
}

double TestBench::accessibleValue(QQuickItem* item) const {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item);
    QAccessibleValueInterface* value =
        accessible != nullptr ? accessible->valueInterface() : nullptr;
    return value != nullptr ? value->currentValue().toDouble() : -1;
}

bool TestBench::act(QQuickItem* item, const QString& action) const {
    QAccessibleActionInterface* actions =
        QAccessible::queryAccessibleInterface(item)->actionInterface();
    actions->doAction(action);
    return actions->actionNames().contains(action);
}

QStringList TestBench::namelessControls(QQuickItem* root) const {
    QStringList nameless;
    walk(root, [&](QQuickItem* item) {
        const bool isControl = item->activeFocusOnTab() || (item->inherits("QQuickControl") &&
                                                            !item->inherits("QQuickScrollBar"));
        if (isControl && nameOf(item).isEmpty()) {
            nameless.append(QString::fromLatin1(item->metaObject()->className()));
        }
        return false;
    });
    return nameless;
}

} // namespace ventaro
