// The layer rule: QtWidgets belongs to the view layer (src/ui) and the
// executables (app) alone, so that all logic runs and is tested headless.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

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
    return relative.startsWith(QLatin1String("build")) || relative.contains(QLatin1String("/build"));
}

// "file:line: include" for each include of a widgets header under `root`.
QStringList widgetIncludes(const QString& root, const QSet<QString>& headers) {
    static const QRegularExpression include(QStringLiteral(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])"));
    static const QStringList sourceSuffixes{QStringLiteral("h"), QStringLiteral("hpp"), QStringLiteral("cpp"),
                                            QStringLiteral("cc"), QStringLiteral("cxx")};
    QStringList found;
    const QDir base(root);
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = base.relativeFilePath(path);
        if (allowedOrIgnored(relative) || !sourceSuffixes.contains(QFileInfo(path).suffix()))
            continue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        int line = 0;
        while (!file.atEnd()) {
            ++line;
            const QString text = QString::fromUtf8(file.readLine());
            const QRegularExpressionMatch m = include.match(text);
            if (!m.hasMatch())
                continue;
            const QString name = m.captured(1);
            if (headers.contains(name) || name.startsWith(QLatin1String("QtWidgets/")))
                found << QStringLiteral("%1:%2: %3").arg(relative).arg(line).arg(name);
        }
    }
    return found;
}

void writeFile(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
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
    const QString root = QStringLiteral(TESSALY_SOURCE_DIR);
    ASSERT_TRUE(QFileInfo::exists(root + QStringLiteral("/src/core/forms/Form.h")));
    const QStringList found = widgetIncludes(root, widgetsHeaders());
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
}

TEST(LayerRuleTest, NoLibraryOutsideTheViewLayerLinksQtWidgets) {
    const QString root = QStringLiteral(TESSALY_SOURCE_DIR);
    QStringList found;
    QDirIterator it(root + QStringLiteral("/src"), {QStringLiteral("CMakeLists.txt")}, QDir::Files,
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
