// The main function of the view tests: one widgets application object for
// the whole run, on the offscreen platform.
#include "TestMain.h"

#include <QApplication>

int main(int argc, char** argv) {
    tessaly::testing::useOffscreenPlatform();
    QApplication app(argc, argv);
    return tessaly::testing::runAllTests(argc, argv);
}
