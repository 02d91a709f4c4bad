#pragma once

#include <functional>

namespace tessaly::testing {

// Runs every GoogleTest test of the binary, then what the tests asked to be
// done at the end (a database server they started is stopped). The main
// functions of the test binaries call it once their Qt application object stands.
int runAllTests(int& argc, char** argv);

// Runs `step` once all tests have run, in the order given.
void atEnd(std::function<void()> step);

// Sets the offscreen platform unless the environment chose one, so that the
// tests need no display.
void useOffscreenPlatform();

} // namespace tessaly::testing
