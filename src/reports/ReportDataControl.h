#pragma once

#include "EngineObject.h"

#include <memory>

namespace tessaly::db {
class DataControl;
class Recordset;
} // namespace tessaly::db

namespace tessaly::reports {

// A report's data control: a connection string and a source statement, read
// through the project's database layer over a connection of its own. Run
// opens the source; the report reads its rows from the first to the last.
class ReportDataControl final : public EngineObject {
public:
    explicit ReportDataControl(QString name);
    ~ReportDataControl() override;

    const QString& name() const { return name_; }
    QString typeName() const override { return name_; }

    QString ConnectionString;
    QString Source;

    // Opens the source anew on the connection string; the database's errors
    // are raised as they come.
    void Run();
    bool hasRun() const { return ran_; }
    db::Recordset& recordset();

private:
    QString name_;
    std::unique_ptr<db::DataControl> control_;
    bool ran_ = false;
};

} // namespace tessaly::reports
