#include "TestBench.h"

#include <QApplication>
#include <QQmlEngine>
#include <QtPlugin>
#include <QtQuickTest>

Q_IMPORT_PLUGIN(Ventaro_StylePlugin)
Q_IMPORT_PLUGIN(Ventaro_ViewsPlugin)

/// Tells the engine of the tests where our own modules are.
class ImportPath : public QObject {
    Q_OBJECT
public:
    Q_SLOT void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    }
};

// The file dialog needs widgets' application, which Qt Quick Test does not make by itself.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Inter")));
    qmlRegisterType<ventaro::TestBench>("Ventaro.Test", 1, 0, "TestBench");
    ImportPath setup;
    const int result = quick_test_main_with_setup(argc, argv, "ui", VENTARO_UI_TESTS, &setup);
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? EXIT_FAILURE : result;
}

#include "main.moc"
