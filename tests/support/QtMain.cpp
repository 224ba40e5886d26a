#include <gmock/gmock.h>

#include <QCoreApplication>

// For tests of what lives on the main thread of a Qt program.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
