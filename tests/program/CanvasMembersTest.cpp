// The canvas members that Tessaly's logic names: every literal member name
// passed to the late-bound helpers (late::get, late::object, late::set,
// late::call and the commands' get, object, put, invoke) in the logic folders
// must be a member of some class of the canvas's object model. A misspelt
// name would otherwise only fail when its line runs.
#include "canvas/api/ObjectModel.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

// The logic folders, relative to the source root; those not yet written are
// passed over.
const QStringList LogicFolders{QStringLiteral("src/workspace"), QStringLiteral("src/drawing_files"),
                               QStringLiteral("src/projects"), QStringLiteral("src/output"),
                               QStringLiteral("src/templates")};
// The workspace alone names far more than this many canvas members.
constexpr int MinimumUses = 100;

// One literal member name passed to a helper, where it stands.
struct MemberUse {
    QString file; // relative to the source root
    int line = 0;
    QString name;
};

// `text` with its comments blanked out (newlines kept), so that a call shown
// in a comment is not taken for one.
QString withoutComments(const QString& text) {
    QString out = text;
    enum { Code, Line, Block, String, Char } state = Code;
    for (qsizetype i = 0; i < out.size(); ++i) {
        const QChar c = out[i];
        const QChar next = i + 1 < out.size() ? out[i + 1] : QChar();
        switch (state) {
        case Code:
            if (c == QLatin1Char('/') && next == QLatin1Char('/'))
                state = Line;
            else if (c == QLatin1Char('/') && next == QLatin1Char('*'))
                state = Block;
            else if (c == QLatin1Char('"'))
                state = String;
            else if (c == QLatin1Char('\''))
                state = Char;
            break;
        case String:
        case Char:
            if (c == QLatin1Char('\\'))
                ++i;
            else if (c == (state == String ? QLatin1Char('"') : QLatin1Char('\'')))
                state = Code;
            break;
        case Line:
            if (c == QLatin1Char('\n'))
                state = Code;
            break;
        case Block:
            if (c == QLatin1Char('*') && next == QLatin1Char('/')) {
                out[i] = out[i + 1] = QLatin1Char(' ');
                ++i;
                state = Code;
            }
            break;
        }
        if ((state == Line || state == Block) && out[i] != QLatin1Char('\n'))
            out[i] = QLatin1Char(' ');
    }
    return out;
}

// The position just past the second argument's start in the call whose
// opening parenthesis is at `open`, or -1 when the call has no second
// argument. Nested brackets and string literals are stepped over.
qsizetype secondArgument(const QString& text, qsizetype open) {
    int depth = 0;
    bool inString = false;
    for (qsizetype i = open + 1; i < text.size(); ++i) {
        const QChar c = text[i];
        if (inString) {
            if (c == QLatin1Char('\\'))
                ++i;
            else if (c == QLatin1Char('"'))
                inString = false;
        } else if (c == QLatin1Char('"')) {
            inString = true;
        } else if (c == QLatin1Char('(') || c == QLatin1Char('{') || c == QLatin1Char('[')) {
            ++depth;
        } else if (c == QLatin1Char(')') || c == QLatin1Char('}') || c == QLatin1Char(']')) {
            if (depth-- == 0)
                return -1;
        } else if (c == QLatin1Char(',') && depth == 0) {
            return i + 1;
        }
    }
    return -1;
}

// Every literal member name in the helper calls of `text`.
QList<MemberUse> memberUses(const QString& file, const QString& text) {
    // A helper by its plain name or qualified by late:: or commands::, never a
    // member function (".get(", "->set(") or another namespace's ("std::get(").
    static const QRegularExpression call(
        QStringLiteral(R"((?<![\w.>:])(?:(?:late|commands)::)?(get|object|set|call|put|invoke)\s*\()"));
    static const QRegularExpression literal(QStringLiteral(R"(^\s*"([A-Za-z_]\w*)\")"));
    const QString code = withoutComments(text);
    QList<MemberUse> uses;
    auto it = call.globalMatch(code);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        const qsizetype second = secondArgument(code, m.capturedEnd() - 1);
        if (second < 0)
            continue;
        const QRegularExpressionMatch name = literal.match(code.mid(second, 80));
        if (!name.hasMatch())
            continue;
        const qsizetype at = second + name.capturedStart(1);
        uses.append({file, static_cast<int>(code.left(at).count(QLatin1Char('\n'))) + 1, name.captured(1)});
    }
    return uses;
}

QList<MemberUse> scanLogic() {
    const QDir root(QStringLiteral(TESSALY_SOURCE_DIR));
    QList<MemberUse> uses;
    for (const QString& folder : LogicFolders) {
        QDirIterator files(root.filePath(folder), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            uses += memberUses(root.relativeFilePath(path), QString::fromUtf8(file.readAll()));
        }
    }
    return uses;
}

// Every member name of every canvas class, in lower case: members are found
// without regard to case.
QSet<QString> canvasMembers() {
    QSet<QString> names;
    for (const auto& [cls, members] : canvas::memberNamesByClass())
        for (const QString& m : members)
            names.insert(m.toLower());
    return names;
}

TEST(CanvasMembers, EveryMemberTheLogicNamesIsAMemberOfACanvasClass) {
    const QSet<QString> known = canvasMembers();
    const QList<MemberUse> uses = scanLogic();
    ASSERT_GE(uses.size(), MinimumUses);
    for (const MemberUse& use : uses)
        EXPECT_TRUE(known.contains(use.name.toLower()))
            << use.file.toStdString() << ":" << use.line << ": no canvas object has a member '"
            << use.name.toStdString() << "'";
}

TEST(CanvasMembers, TheScanFindsTheHelpersCallsAndTheirLines) {
    const QString text = QStringLiteral("// late::get(view, \"NotACall\")\n"
                                        "late::set(gView, \"Zoom\", 100);\n"
                                        "const AutoPtr s = late::object(\n"
                                        "    late::object(gShapeList, \"ItemById\", {id}), \"Text\");\n"
                                        "invoke(range, \"Reorder\", {0}); put(fill, edge, 1);\n"
                                        "settings.get(\"Section\", \"Key\"); std::get(t, \"x\");\n");
    const QList<MemberUse> uses = memberUses(QStringLiteral("probe.cpp"), text);
    QStringList found;
    for (const MemberUse& u : uses)
        found << QStringLiteral("%1:%2").arg(u.line).arg(u.name);
    EXPECT_EQ(found, (QStringList{QStringLiteral("2:Zoom"), QStringLiteral("4:Text"),
                                  QStringLiteral("4:ItemById"), QStringLiteral("5:Reorder")}));
}

TEST(CanvasMembers, TheCanvasClassesListTheirMembers) {
    const auto classes = canvas::memberNamesByClass();
    ASSERT_TRUE(classes.contains(QStringLiteral("POLARDraw")));
    EXPECT_TRUE(classes.at(QStringLiteral("POLARDraw")).contains(QStringLiteral("View")));
    EXPECT_TRUE(classes.at(QStringLiteral("POLARDraw")).contains(QStringLiteral("Views")));
    EXPECT_TRUE(classes.at(QStringLiteral("ViewList")).contains(QStringLiteral("Item")));
    EXPECT_TRUE(classes.at(QStringLiteral("View")).contains(QStringLiteral("Zoom")));
    EXPECT_TRUE(classes.at(QStringLiteral("ShapeList")).contains(QStringLiteral("ItemById")));
    EXPECT_TRUE(classes.at(QStringLiteral("LensFormat")).contains(QStringLiteral("Percent")));
    EXPECT_FALSE(canvasMembers().contains(QStringLiteral("zooom")));
}

} // namespace
} // namespace tessaly
