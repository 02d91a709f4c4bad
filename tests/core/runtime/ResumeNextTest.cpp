#include "core/runtime/ResumeNext.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(ResumeNext, AFailedStepEndsOnlyThatStep) {
    QStringList ran;
    const int first = resumeNext([&] {
        ran << QStringLiteral("a");
        raiseError(err::Overflow, QStringLiteral("Overflow"));
        ran << QStringLiteral("never");
    });
    const int second = resumeNext([&] { ran << QStringLiteral("b"); });
    EXPECT_EQ(first, err::Overflow);
    EXPECT_EQ(second, 0);
    EXPECT_EQ(ran, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

} // namespace
} // namespace tessaly
