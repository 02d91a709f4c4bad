#pragma once

#include <QGuiApplication>
#include <cstdlib>

// Painters and fonts need an application object; fuzzing runs offscreen.
inline void startFuzzApplication() {
    static int argc = 1;
    static char name[] = "tessaly_fuzz";
    static char* argv[] = {name, nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QGuiApplication app(argc, argv);
}
