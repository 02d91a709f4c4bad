// The layer rules of the source tree.
//
// 1. Each folder under src/ is one layer and includes only folders below it,
//    by the table below. Every #include between folders is read; one the table
//    does not allow fails the test with its file and line.
// 2. QtWidgets belongs to the view layer (src/ui) and the executables (app)
//    alone, so that all logic runs and is tested headless.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <vector>

namespace {

// --- the dependency table -------------------------------------------------

// A layer of the tree: a folder (or, for the run-time library inside the core,
// a sub-folder) and the layers its files may include besides their own.
struct Layer {
    const char* path;
    std::vector<const char*> mayInclude;
};

// Bottom to top. The logic folders of one level form a chain, so none of them
// includes another in a circle.
const std::vector<Layer>& layers() {
    static const std::vector<Layer> table{
        {"src/core/runtime", {}},
        {"src/core", {"src/core/runtime"}},
        {"src/metafile", {"src/core/runtime", "src/core"}},
        {"src/canvas", {"src/core/runtime", "src/core/files", "src/metafile"}},
        {"src/reports", {"src/core/runtime", "src/core", "src/metafile", "src/canvas"}},
        {"src/schedule", {"src/core/runtime", "src/core", "src/metafile", "src/canvas"}},
        {"src/templates", {"src/core/runtime", "src/core", "src/metafile", "src/canvas"}},
        {"src/workspace",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates"}},
        {"src/output",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates", "src/workspace"}},
        {"src/drawing_files",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates", "src/workspace", "src/output"}},
        {"src/projects",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates", "src/workspace", "src/output", "src/drawing_files"}},
        {"src/program",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates", "src/workspace", "src/output", "src/drawing_files", "src/projects"}},
        {"src/ui",
         {"src/core/runtime", "src/core", "src/metafile", "src/canvas", "src/reports", "src/schedule",
          "src/templates", "src/workspace", "src/output", "src/drawing_files", "src/projects",
          "src/program"}},
        {"app", {"src"}},
    };
    return table;
}

// The layer a path of the tree lies in: the longest layer path it starts
// with; "" for a path in none (tests, benchmarks, generated files).
QString layerOf(const QString& relative) {
    QString best;
    for (const Layer& layer : layers()) {
        const QString p = QString::fromLatin1(layer.path);
        if ((relative == p || relative.startsWith(p + QLatin1Char('/'))) && p.size() > best.size())
            best = p;
    }
    return best;
}

bool mayInclude(const QString& from, const QString& targetRelative) {
    const QString to = layerOf(targetRelative);
    if (to.isEmpty() || to == from)
        return true;
    for (const Layer& layer : layers()) {
        if (QString::fromLatin1(layer.path) != from)
            continue;
        for (const char* allowed : layer.mayInclude) {
            const QString a = QString::fromLatin1(allowed);
            if (targetRelative.startsWith(a + QLatin1Char('/')))
                return true;
        }
    }
    return false;
}

const QStringList& sourceSuffixes() {
    static const QStringList suffixes{QStringLiteral("h"), QStringLiteral("hpp"), QStringLiteral("cpp"),
                                      QStringLiteral("cc"), QStringLiteral("cxx")};
    return suffixes;
}

bool isBuildTree(const QString& relative) {
    return relative.startsWith(QLatin1String("build")) || relative.contains(QLatin1String("/build"));
}

// One #include of a source file: its line and the name between the quotes or brackets.
struct Include {
    int line;
    QString name;
};

std::vector<Include> includesOf(const QString& path) {
    static const QRegularExpression include(QStringLiteral(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])"));
    std::vector<Include> found;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return found;
    int line = 0;
    while (!file.atEnd()) {
        ++line;
        const QRegularExpressionMatch m = include.match(QString::fromUtf8(file.readLine()));
        if (m.hasMatch())
            found.push_back({line, m.captured(1)});
    }
    return found;
}

// The file of the tree an include names, relative to the root: beside the
// including file first, then from src/; "" for a header outside the tree.
QString resolveInclude(const QDir& root, const QString& includingRelative, const QString& name) {
    const QString beside = QFileInfo(includingRelative).path() + QLatin1Char('/') + name;
    if (QFileInfo::exists(root.filePath(beside)))
        return QDir::cleanPath(beside);
    const QString fromSrc = QStringLiteral("src/") + name;
    if (QFileInfo::exists(root.filePath(fromSrc)))
        return QDir::cleanPath(fromSrc);
    return {};
}

// "file:line: includes NAME, which LAYER may not include" for each include
// between layers that the table does not allow, in src/ and app/ under `root`.
QStringList layerViolations(const QString& root) {
    QStringList found;
    const QDir base(root);
    for (const QString& top : {QStringLiteral("src"), QStringLiteral("app")}) {
        QDirIterator it(base.filePath(top), QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString relative = base.relativeFilePath(path);
            const QString from = layerOf(relative);
            if (from.isEmpty() || isBuildTree(relative) ||
                !sourceSuffixes().contains(QFileInfo(path).suffix()))
                continue;
            for (const Include& inc : includesOf(path)) {
                const QString target = resolveInclude(base, relative, inc.name);
                if (!target.isEmpty() && !mayInclude(from, target))
                    found << QStringLiteral("%1:%2: includes %3, which %4 may not include")
                                 .arg(relative)
                                 .arg(inc.line)
                                 .arg(inc.name, from);
            }
        }
    }
    return found;
}

// --- the widgets rule ------------------------------------------------------

// Every header name that QtWidgets installs ("QPushButton", "qpushbutton.h", ...).
QSet<QString> widgetsHeaders() {
    QSet<QString> names;
    const QDir dir(QStringLiteral(QT_WIDGETS_HEADER_DIR));
    for (const QString& name : dir.entryList(QDir::Files))
        names.insert(name);
    names.insert(QStringLiteral("QtWidgets"));
    return names;
}

// Folders whose files may use widgets, relative to the root (the view layer,
// the programs, and the tests of views); and folders that are no source
// (build trees, version control).
bool allowedOrIgnored(const QString& relative) {
    static const QStringList prefixes{QStringLiteral("src/ui/"), QStringLiteral("app/"),
                                      QStringLiteral("tests/ui/"), QStringLiteral(".git/")};
    for (const QString& p : prefixes)
        if (relative.startsWith(p))
            return true;
    if (relative.startsWith(QLatin1String("tests/")) && relative.contains(QLatin1String("/views/")))
        return true;
    return isBuildTree(relative);
}

// "file:line: include" for each include of a widgets header under `root`.
QStringList widgetIncludes(const QString& root, const QSet<QString>& headers) {
    QStringList found;
    const QDir base(root);
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = base.relativeFilePath(path);
        if (allowedOrIgnored(relative) || !sourceSuffixes().contains(QFileInfo(path).suffix()))
            continue;
        for (const Include& inc : includesOf(path))
            if (headers.contains(inc.name) || inc.name.startsWith(QLatin1String("QtWidgets/")))
                found << QStringLiteral("%1:%2: %3").arg(relative).arg(inc.line).arg(inc.name);
    }
    return found;
}

void writeFile(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QString sourceRoot() {
    return QStringLiteral(TESSALY_SOURCE_DIR);
}

// --- tests -----------------------------------------------------------------

TEST(LayerRuleTest, TheTableIsAChainWithoutCircles) {
    // Each layer may include only layers listed before it.
    QStringList seen;
    for (const Layer& layer : layers()) {
        for (const char* allowed : layer.mayInclude) {
            const QString a = QString::fromLatin1(allowed);
            const bool below =
                a == QLatin1String("src") || seen.contains(layerOf(a + QStringLiteral("/X.h")));
            EXPECT_TRUE(below) << layer.path << " may include " << allowed << ", which is not below it";
        }
        seen << QString::fromLatin1(layer.path);
    }
    EXPECT_EQ(seen.size(), 14);
}

TEST(LayerRuleTest, ALayerIsTheLongestFolderAPathStartsWith) {
    EXPECT_EQ(layerOf(QStringLiteral("src/core/runtime/Vb.h")), QStringLiteral("src/core/runtime"));
    EXPECT_EQ(layerOf(QStringLiteral("src/core/db/Recordset.h")), QStringLiteral("src/core"));
    EXPECT_EQ(layerOf(QStringLiteral("src/workspace/forms/frmGrid.cpp")), QStringLiteral("src/workspace"));
    EXPECT_EQ(layerOf(QStringLiteral("app/script/main.cpp")), QStringLiteral("app"));
    EXPECT_EQ(layerOf(QStringLiteral("tests/ui/X.cpp")), QString());
}

TEST(LayerRuleTest, ScannerNamesTheFileAndLineOfAnIncludeThatGoesUp) {
    QTemporaryDir root;
    const QString r = root.path() + QLatin1Char('/');
    writeFile(r + QStringLiteral("src/workspace/frmMain.h"), "#pragma once\n");
    writeFile(r + QStringLiteral("src/core/db/Recordset.h"), "#pragma once\n");
    writeFile(r + QStringLiteral("src/core/runtime/Vb.h"),
              "#pragma once\n#include \"core/db/Recordset.h\"\n");
    writeFile(r + QStringLiteral("src/canvas/api/A.cpp"),
              "#include \"core/runtime/Vb.h\"\n#include <QPainter>\n\n#include \"workspace/frmMain.h\"\n"
              "#include \"core/db/Recordset.h\"\n");
    writeFile(r + QStringLiteral("src/projects/B.cpp"),
              "#include \"workspace/frmMain.h\"\n#include \"Own.h\"\n");
    writeFile(r + QStringLiteral("src/projects/Own.h"), "#pragma once\n");
    writeFile(r + QStringLiteral("src/workspace/C.cpp"),
              "#include \"frmMain.h\"\n#include \"projects/Own.h\"\n");
    writeFile(r + QStringLiteral("app/main.cpp"), "#include \"projects/Own.h\"\n");
    const QStringList found = layerViolations(root.path());
    EXPECT_EQ(found.size(), 4) << found.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(found.contains(QStringLiteral(
        "src/canvas/api/A.cpp:4: includes workspace/frmMain.h, which src/canvas may not include")));
    EXPECT_TRUE(found.contains(QStringLiteral(
        "src/canvas/api/A.cpp:5: includes core/db/Recordset.h, which src/canvas may not include")));
    EXPECT_TRUE(found.contains(QStringLiteral(
        "src/core/runtime/Vb.h:2: includes core/db/Recordset.h, which src/core/runtime may not include")));
    EXPECT_TRUE(found.contains(QStringLiteral(
        "src/workspace/C.cpp:2: includes projects/Own.h, which src/workspace may not include")));
}

TEST(LayerRuleTest, EveryIncludeBetweenFoldersFollowsTheTable) {
    ASSERT_TRUE(QFileInfo::exists(sourceRoot() + QStringLiteral("/src/core/forms/Form.h")));
    const QStringList found = layerViolations(sourceRoot());
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
}

TEST(LayerRuleTest, EveryFolderUnderSrcIsALayerOfTheTable) {
    const QDir src(sourceRoot() + QStringLiteral("/src"));
    const QStringList folders = src.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_FALSE(folders.isEmpty());
    for (const QString& folder : folders)
        EXPECT_EQ(layerOf(QStringLiteral("src/") + folder + QStringLiteral("/X.h")),
                  QStringLiteral("src/") + folder)
            << "src/" << folder.toStdString() << " has no place in the layer table";
}

TEST(LayerRuleTest, KnowsTheWidgetsHeaders) {
    const QSet<QString> headers = widgetsHeaders();
    EXPECT_TRUE(headers.contains(QStringLiteral("QWidget")));
    EXPECT_TRUE(headers.contains(QStringLiteral("QMessageBox")));
    EXPECT_TRUE(headers.contains(QStringLiteral("qpushbutton.h")));
    EXPECT_FALSE(headers.contains(QStringLiteral("QPainter")));
    EXPECT_FALSE(headers.contains(QStringLiteral("QImage")));
}

TEST(LayerRuleTest, ScannerFindsWidgetIncludesOutsideTheViewLayerOnly) {
    QTemporaryDir root;
    writeFile(root.filePath(QStringLiteral("src/core/A.cpp")),
              "#include <QPainter>\n#include <QPushButton>\n  #  include \"QtWidgets/QLabel\"\n");
    writeFile(root.filePath(QStringLiteral("src/workspace/B.h")),
              "#include <QtWidgets>\n#include <QImage>\n");
    writeFile(root.filePath(QStringLiteral("src/canvas/C.cpp")), "#include <qwidget.h>\n");
    writeFile(root.filePath(QStringLiteral("src/ui/View.cpp")), "#include <QWidget>\n");
    writeFile(root.filePath(QStringLiteral("app/tessaly/main.cpp")), "#include <QApplication>\n");
    const QStringList found = widgetIncludes(root.path(), widgetsHeaders());
    EXPECT_EQ(found.size(), 4) << found.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(found.contains(QStringLiteral("src/core/A.cpp:2: QPushButton")));
    EXPECT_TRUE(found.contains(QStringLiteral("src/core/A.cpp:3: QtWidgets/QLabel")));
    EXPECT_TRUE(found.contains(QStringLiteral("src/workspace/B.h:1: QtWidgets")));
    EXPECT_TRUE(found.contains(QStringLiteral("src/canvas/C.cpp:1: qwidget.h")));
}

TEST(LayerRuleTest, NoFileOutsideTheViewLayerIncludesQtWidgets) {
    ASSERT_TRUE(QFileInfo::exists(sourceRoot() + QStringLiteral("/src/core/forms/Form.h")));
    const QStringList found = widgetIncludes(sourceRoot(), widgetsHeaders());
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
}

TEST(LayerRuleTest, NoLibraryOutsideTheViewLayerLinksQtWidgets) {
    QStringList found;
    QDirIterator it(sourceRoot() + QStringLiteral("/src"), {QStringLiteral("CMakeLists.txt")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path.contains(QLatin1String("/src/ui/")))
            continue;
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        if (QString::fromUtf8(file.readAll()).contains(QLatin1String("Qt6::Widgets")))
            found << path;
    }
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
}

} // namespace
