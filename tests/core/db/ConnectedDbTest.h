#pragma once

#include "Database.h"
#include "core/db/Connection.h"

namespace tessaly::db::test {

// A fresh project database with one connection open on it for the whole test.
class ConnectedDbTest : public DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        if (HasFatalFailure())
            return;
        connection.Open(connectionString());
    }
    void TearDown() override {
        connection.Close();
        DbTest::TearDown();
    }

    Connection connection;
};

} // namespace tessaly::db::test
