// The README's table of the application home, checked row by row against a
// fresh install: what it says is there after the install step is there, with
// the files and settings it names; what it says comes later is not there yet.
#include "program/DesktopInstall.h"
#include "program/Program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;

namespace {

struct Row {
    QStringList paths;
    bool afterInstall = false;
    QStringList named; // the names in backquotes of the description
};

QStringList quoted(const QString& cell) {
    QStringList out;
    static const QRegularExpression code(QStringLiteral("`([^`]+)`"));
    for (auto it = code.globalMatch(cell); it.hasNext();)
        out << it.next().captured(1);
    return out;
}

// The rows of the table that follows the heading "## The application home".
std::vector<Row> homeTable() {
    QFile f(QStringLiteral(TESSALY_SOURCE_DIR "/README.md"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
    std::vector<Row> rows;
    bool inSection = false;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("## ")))
            inSection = line == QLatin1String("## The application home");
        if (!inSection || !line.startsWith(QLatin1String("| `")))
            continue;
        const QStringList cells = line.split(QLatin1Char('|'));
        if (cells.size() < 5)
            return {}; // a row without the "After install" column
        rows.push_back(Row{quoted(cells[1]), cells[2].trimmed() == QLatin1String("yes"), quoted(cells[3])});
    }
    return rows;
}

} // namespace

TEST(ReadmeHome, EveryRowOfTheHomeTableHoldsForAFreshInstall) {
    QTemporaryDir dir;
    const AppHome home(dir.path() + QStringLiteral("/home"));
    program::installHome(home);
    // The desktop program's install also copies the guide the build made (a
    // stand-in where this build has none).
    QString guide = program::builtGuide();
    if (guide.isEmpty()) {
        guide = dir.path() + QStringLiteral("/guide.pdf");
        QFile standIn(guide);
        ASSERT_TRUE(standIn.open(QIODevice::WriteOnly));
        standIn.write("%PDF-1.5");
    }
    program::installGuide(home, guide);

    const std::vector<Row> rows = homeTable();
    ASSERT_GE(rows.size(), 10u) << "the README's home table is missing or lacks its \"After install\" column";
    QStringList listed;
    for (const Row& row : rows)
        for (const QString& path : row.paths) {
            SCOPED_TRACE(path.toStdString());
            listed << path;
            const QFileInfo at(home.dir() + QLatin1Char('/') + path);
            EXPECT_EQ(at.exists(), row.afterInstall)
                << (row.afterInstall ? "named as installed, but missing"
                                     : "named as coming later, but installed");
            if (!row.afterInstall)
                continue;
            if (path.endsWith(QLatin1Char('/'))) {
                // A folder: the files its description names are in it.
                for (const QString& name : row.named) {
                    if (name.contains(QLatin1Char('.'))) {
                        EXPECT_TRUE(QFileInfo(at.filePath() + QLatin1Char('/') + name).isFile())
                            << name.toStdString() << " is not in " << path.toStdString();
                    }
                }
            } else if (path.endsWith(QLatin1String(".ini"))) {
                // A settings file: every value its description names is set.
                QFile ini(at.filePath());
                ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
                const QString text = QString::fromUtf8(ini.readAll());
                for (const QString& key : row.named) {
                    if (key != QLatin1String("Data")) {
                        EXPECT_TRUE(text.contains(key + QLatin1Char('='))) << key.toStdString();
                    }
                }
            }
        }
    // Everything the install puts at the top of the home has its row.
    for (const QFileInfo& entry : QDir(home.dir()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QString name = entry.isDir() ? entry.fileName() + QLatin1Char('/') : entry.fileName();
        EXPECT_TRUE(listed.contains(name))
            << name.toStdString() << " is installed but not in the README's table";
    }
}
