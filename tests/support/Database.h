#pragma once

#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

namespace tessaly::db::test {

enum class Engine { Sqlite, Postgres };

// How gtest prints the engine in a test's parameter.
inline void PrintTo(Engine engine, std::ostream* os) {
    *os << (engine == Engine::Sqlite ? "SQLite" : "PostgreSQL");
}

// The loopback PostgreSQL server of the tests: the one the CTest fixture
// started, or one this process starts for itself when run on its own.
// Fails the calling test when no server can be had.
class PostgresServer {
public:
    static PostgresServer& instance();
    // "Provider=PostgreSQL;Data Source=127.0.0.1:<port>/tessaly;User ID=tessaly" plus the schema, if any.
    QString connectionString(const QString& schema = {}) const;
    bool available() const { return !port_.isEmpty(); }
    const QString& problem() const { return problem_; }
    void stopOwnServer();

private:
    PostgresServer();
    bool readInfo(const QString& stateDir);

    QString host_;
    QString port_;
    QString user_;
    QString database_;
    QString problem_;
    QString ownState_; // set when this process started the server itself
};

// Stops the server this process started for itself, if it did; the main
// function calls it once all tests have run.
void stopOwnPostgresServer();

// A fresh project database for each test, on the engine of the test's parameter.
class DbTest : public ::testing::TestWithParam<Engine> {
protected:
    void SetUp() override;
    void TearDown() override;

    Engine engine() const { return GetParam(); }
    bool isSqlite() const { return GetParam() == Engine::Sqlite; }
    // The connection string as the start-up builds it (trailing semicolon).
    const QString& connectionString() const { return connectionString_; }
    // The data controls' form: no trailing semicolon.
    QString controlConnectionString() const;
    // For SQLite, the file's host path.
    const QString& databasePath() const { return databasePath_; }

    std::unique_ptr<QTemporaryDir> dir_;
    QString databasePath_;
    QString schema_;
    QString connectionString_;
};

std::string engineName(const ::testing::TestParamInfo<Engine>& info);

#define TESSALY_DB_ENGINES(Suite)                                                                            \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        Engines, Suite,                                                                                      \
        ::testing::Values(::tessaly::db::test::Engine::Sqlite, ::tessaly::db::test::Engine::Postgres),       \
        ::tessaly::db::test::engineName)

// A client row through the program's own idiom; returns the generated key.
int addClient(const QString& connectionString, const QString& name, const QString& address = {},
              const QString& postCode = {});
int addSite(const QString& connectionString, int clientId, const QString& site, const QString& address);
// How many rows a query returns.
int countRows(const QString& connectionString, const QString& sql);

} // namespace tessaly::db::test
