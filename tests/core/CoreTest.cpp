#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/frmSettings.h"
#include "workspace/Application.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;

namespace {
QStringList logLines(const QString& path) {
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return QString::fromLocal8Bit(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
} // namespace

TEST(CommonRoutines, ReportErrorAppendsOneLineEachAndKeepsTheLog) {
    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    Application app(ui, waiter, AppHome(dir.path()));
    QFile old(dir.path() + QStringLiteral("/ErrorLog.Log"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("earlier line\n");
    old.close();
    common::ReportError(app, QStringLiteral("76"), QStringLiteral("Path not found"), QStringLiteral("Save"));
    common::ReportError(app, QStringLiteral("53"), QStringLiteral("File not found"), QStringLiteral("Save"));
    common::ReportError(app, QStringLiteral("5"), QStringLiteral("x"), QStringLiteral("y"));
    const QStringList lines = logLines(dir.path() + QStringLiteral("/ErrorLog.Log"));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], QStringLiteral("earlier line"));
    EXPECT_TRUE(lines[1].endsWith(QStringLiteral("-76-Path not found-Save"))) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].endsWith(QStringLiteral("-53-File not found-Save")));
    EXPECT_TRUE(lines[3].endsWith(QStringLiteral("-5-x-y")));
    // The date and time stand first: "dd/MM/yyyy HH:mm:ss".
    EXPECT_EQ(lines[1].indexOf(QLatin1Char('-')), 19);
}

TEST(Settings, ReadOnlyStoreIsSilentlyLeftAlone) {
    QTemporaryDir dir;
    SettingsStore store(dir.path() + QStringLiteral("/m.ini"));
    ASSERT_TRUE(store.write(QStringLiteral("Software\\Morvane Works\\KORV"), QStringLiteral("FileStore"), QStringLiteral("A")));
    QFile::setPermissions(store.path(), QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    EXPECT_FALSE(store.write(QStringLiteral("Software\\Morvane Works\\KORV"), QStringLiteral("FileStore"), QStringLiteral("B")));
    EXPECT_EQ(store.read(QStringLiteral("Software\\Morvane Works\\KORV"), QStringLiteral("FileStore")), QStringLiteral("A"));
}

TEST(Settings, SaveWithoutWriteAccessShowsTheRestartBoxAndChangesNothing) {
    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    std::vector<QJsonObject> events;
    ui.onEvent = [&](const QJsonObject& o) { events.push_back(o); };
    {
        Application app(ui, waiter, AppHome(dir.path()));
        app.machineSettings.write(MachineKey, QStringLiteral("CopyrightText"), QStringLiteral("Old"));
        QFile::setPermissions(app.machineSettings.path(), QFileDevice::ReadOwner);
        auto& settings = app.form<frmSettings>();
        settings.txtCopyright.setText(QStringLiteral("New"));
        settings.raiseEvent(settings.cmdSave, QStringLiteral("Click"));
        EXPECT_EQ(app.machineSettings.read(MachineKey, QStringLiteral("CopyrightText")), QStringLiteral("Old"));
    }
    bool sawRestart = false;
    for (const QJsonObject& e : events)
        if (e.value(QStringLiteral("text")).toString() ==
            QStringLiteral("In order for the changes to take effect,\nIt is necessary to re-start the program"))
            sawRestart = e.value(QStringLiteral("flags")).toInt() == 16;
    EXPECT_TRUE(sawRestart);
}

TEST(FileSystem, MatchesNamesWithoutRegardToCase) {
    QTemporaryDir dir;
    QFile f(dir.path() + QStringLiteral("/Plan.pdf"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    EXPECT_TRUE(fs::fileExists(dir.path() + QStringLiteral("\\plan.PDF")));
    EXPECT_TRUE(fs::fileExists(dir.path() + QStringLiteral("\\*.pdf")));
    EXPECT_FALSE(fs::fileExists(dir.path() + QStringLiteral("\\*.tiff")));
    EXPECT_FALSE(fs::fileExists(QString()));
    EXPECT_EQ(fs::toHost(dir.path() + QStringLiteral("\\PLAN.pdf")), dir.path() + QStringLiteral("/Plan.pdf"));
}

TEST(FileSystem, AtomicWriteReplacesWholeFile) {
    QTemporaryDir dir;
    const QString p = dir.path() + QStringLiteral("\\a.pdr");
    fs::writeAtomically(p, QByteArray("first"));
    fs::writeAtomically(p, QByteArray("second version"));
    EXPECT_EQ(fs::readAll(p), QByteArray("second version"));
    try {
        fs::writeAtomically(dir.path() + QStringLiteral("\\missing\\a.pdr"), QByteArray("x"));
        FAIL();
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 76);
    }
}
