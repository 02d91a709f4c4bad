#include "DbTestSupport.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

// Qt SQL loads its engine drivers as plugins, which needs an application object.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    tessaly::db::test::stopOwnPostgresServer();
    return result;
}
