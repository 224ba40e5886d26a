#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>

// The least that any Qt Quick program of the dashboard's size takes: what the program is measured
// against.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQuickView window;
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.setSource(QUrl(QStringLiteral("data:,import QtQuick%0aRectangle { }")));
    window.resize(980, 680);
    window.show();
    return QGuiApplication::exec();
}
