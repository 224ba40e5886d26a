#include <QCoreApplication>

// A program that does nothing with QtCore: what the memory of one that does something is measured
// against.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return QCoreApplication::exec();
}
