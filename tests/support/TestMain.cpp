#include "TestMain.h"

#include <QByteArray>
#include <QLocale>
#include <QtGlobal>
#include <gtest/gtest.h>
#include <vector>

namespace tessaly::testing {

namespace {
std::vector<std::function<void()>>& endSteps() {
    static std::vector<std::function<void()>> steps;
    return steps;
}
} // namespace

void atEnd(std::function<void()> step) {
    endSteps().push_back(std::move(step));
}

void useOffscreenPlatform() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

int runAllTests(int& argc, char** argv) {
    // The tests run in the locale the script driver takes by default: dates
    // day first, money in pounds.
    QLocale::setDefault(QLocale(QStringLiteral("en_GB")));
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    for (const auto& step : endSteps())
        step();
    return result;
}

} // namespace tessaly::testing
