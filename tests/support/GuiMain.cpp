// The main function of the test binaries without widgets: one GUI
// application object for the whole run (painters, fonts, the clipboard and
// Qt SQL's driver plugins need it), on the offscreen platform.
#include "TestMain.h"

#include <QGuiApplication>

int main(int argc, char** argv) {
    tessaly::testing::useOffscreenPlatform();
    QGuiApplication app(argc, argv);
    return tessaly::testing::runAllTests(argc, argv);
}
