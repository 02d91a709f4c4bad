#include "templates/library/CatalogueParser.h"

#include "core/runtime/RuntimeError.h"

#include <QHash>
#include <QMap>
#include <cmath>
#include <stdexcept>

namespace tessaly::templates {

namespace {

constexpr int MaxNesting = 16;                // macros using macros, and repeats, nest at most this deep
constexpr int MaxRepeat = 1000;               // one repeat runs at most this many times
constexpr double DegToRad = M_PI / 180.0;     // trigonometric functions take degrees
const QColor DefaultFill = QColor(Qt::white); // "fill" without a colour

// A fault in the catalogue's text; turned into error 5 with the line.
struct SyntaxFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

[[noreturn]] void fault(const QString& text) {
    throw SyntaxFault(text.toStdString());
}

// --- expressions -------------------------------------------------------------

class ExpressionReader {
public:
    ExpressionReader(const QString& text, const QHash<QString, double>& names) : s_(text), names_(names) {}

    double read() {
        const double v = sum();
        if (pos_ != s_.size())
            fault(QStringLiteral("unexpected '%1' in '%2'").arg(s_.mid(pos_), s_));
        return v;
    }

private:
    double sum() {
        double v = product();
        while (pos_ < s_.size() && (s_[pos_] == u'+' || s_[pos_] == u'-')) {
            const bool plus = s_[pos_++] == u'+';
            const double r = product();
            v = plus ? v + r : v - r;
        }
        return v;
    }
    double product() {
        double v = unary();
        while (pos_ < s_.size() && (s_[pos_] == u'*' || s_[pos_] == u'/')) {
            const bool times = s_[pos_++] == u'*';
            const double r = unary();
            if (!times && r == 0)
                fault(QStringLiteral("division by zero in '%1'").arg(s_));
            v = times ? v * r : v / r;
        }
        return v;
    }
    double unary() {
        if (pos_ < s_.size() && s_[pos_] == u'-') {
            ++pos_;
            return -unary();
        }
        if (pos_ < s_.size() && s_[pos_] == u'+') {
            ++pos_;
            return unary();
        }
        return atom();
    }
    double atom() {
        if (pos_ >= s_.size())
            fault(QStringLiteral("expression '%1' ends too early").arg(s_));
        if (s_[pos_] == u'(') {
            ++pos_;
            const double v = sum();
            expect(u')');
            return v;
        }
        if (s_[pos_].isDigit() || s_[pos_] == u'.') {
            const int start = pos_;
            while (pos_ < s_.size() && (s_[pos_].isDigit() || s_[pos_] == u'.'))
                ++pos_;
            bool ok = false;
            const double v = s_.mid(start, pos_ - start).toDouble(&ok);
            if (!ok)
                fault(QStringLiteral("bad number in '%1'").arg(s_));
            return v;
        }
        if (s_[pos_].isLetter() || s_[pos_] == u'_') {
            const int start = pos_;
            while (pos_ < s_.size() && (s_[pos_].isLetterOrNumber() || s_[pos_] == u'_'))
                ++pos_;
            const QString name = s_.mid(start, pos_ - start);
            if (pos_ < s_.size() && s_[pos_] == u'(')
                return function(name);
            const auto it = names_.constFind(name);
            if (it == names_.constEnd())
                fault(QStringLiteral("unknown name '%1'").arg(name));
            return *it;
        }
        fault(QStringLiteral("unexpected '%1' in '%2'").arg(s_.mid(pos_), s_));
    }
    double function(const QString& name) {
        ++pos_;
        const double a = sum();
        expect(u')');
        if (name == QLatin1String("sin"))
            return std::sin(a * DegToRad);
        if (name == QLatin1String("cos"))
            return std::cos(a * DegToRad);
        if (name == QLatin1String("sqrt") && a >= 0)
            return std::sqrt(a);
        fault(QStringLiteral("unknown function '%1'").arg(name));
    }
    void expect(QChar c) {
        if (pos_ >= s_.size() || s_[pos_] != c)
            fault(QStringLiteral("'%1' missing in '%2'").arg(c).arg(s_));
        ++pos_;
    }

    const QString& s_;
    const QHash<QString, double>& names_;
    int pos_ = 0;
};

// --- lines -------------------------------------------------------------------

struct Token {
    QString text;
    bool quoted = false;
};

struct SourceLine {
    int number = 0;
    QList<Token> tokens;
    const QString& word(int i) const { return tokens[i].text; }
    bool isWord(int i, const char* w) const {
        return i < tokens.size() && !tokens[i].quoted && tokens[i].text == QLatin1String(w);
    }
};

QList<Token> tokenize(const QString& line) {
    QList<Token> out;
    int i = 0;
    while (i < line.size()) {
        if (line[i].isSpace()) {
            ++i;
            continue;
        }
        if (line[i] == u'#')
            break;
        Token t;
        if (line[i] == u'"') {
            const int close = line.indexOf(u'"', i + 1);
            if (close < 0)
                fault(QStringLiteral("a quoted text is not closed"));
            t.text = line.mid(i + 1, close - i - 1);
            t.quoted = true;
            i = close + 1;
        } else {
            const int start = i;
            while (i < line.size() && !line[i].isSpace())
                ++i;
            t.text = line.mid(start, i - start);
        }
        out << t;
    }
    return out;
}

struct Macro {
    QStringList params;
    std::vector<SourceLine> body;
};

// Runs the commands of a symbol or macro body and collects the parts.
class Builder {
public:
    explicit Builder(const QHash<QString, Macro>& macros) : macros_(macros) {}

    void run(const std::vector<SourceLine>& lines, size_t begin, size_t end, QHash<QString, double>& vars,
             std::vector<Part>& parts, int depth) {
        if (depth > MaxNesting)
            fault(QStringLiteral("macros or repeats nest too deep"));
        for (size_t i = begin; i < end; ++i) {
            const SourceLine& l = lines[i];
            line_ = l.number;
            if (l.isWord(0, "repeat")) {
                const size_t close = matchingEnd(lines, i, end);
                repeat(lines, i, close, vars, parts, depth);
                i = close;
            } else {
                command(l, vars, parts, depth);
            }
        }
    }

    int line() const { return line_; }

    static size_t matchingEnd(const std::vector<SourceLine>& lines, size_t open, size_t end) {
        int depth = 0;
        for (size_t j = open; j < end; ++j) {
            if (lines[j].isWord(0, "repeat"))
                ++depth;
            else if (lines[j].isWord(0, "end") && --depth == 0)
                return j;
        }
        fault(QStringLiteral("'repeat' has no 'end'"));
    }

private:
    void repeat(const std::vector<SourceLine>& lines, size_t open, size_t close, QHash<QString, double>& vars,
                std::vector<Part>& parts, int depth) {
        const SourceLine& l = lines[open];
        if (l.tokens.size() != 4)
            fault(QStringLiteral("repeat takes a name, a first and a last value"));
        const long from = std::lround(number(l, 2, vars));
        const long to = std::lround(number(l, 3, vars));
        if (to - from >= MaxRepeat)
            fault(QStringLiteral("repeat runs too often"));
        for (long k = from; k <= to; ++k) {
            vars[l.word(1)] = static_cast<double>(k);
            run(lines, open + 1, close, vars, parts, depth + 1);
        }
    }

    void command(const SourceLine& l, QHash<QString, double>& vars, std::vector<Part>& parts, int depth) {
        const QString& cmd = l.word(0);
        if (cmd == QLatin1String("set")) {
            if (l.tokens.size() != 3)
                fault(QStringLiteral("set takes a name and a value"));
            vars[l.word(1)] = number(l, 2, vars);
        } else if (cmd == QLatin1String("use")) {
            use(l, 1, vars, parts, depth);
        } else {
            parts.push_back(part(l, vars));
        }
    }

public:
    void use(const SourceLine& l, int at, const QHash<QString, double>& vars, std::vector<Part>& parts,
             int depth) {
        if (at >= l.tokens.size())
            fault(QStringLiteral("use needs a macro name"));
        const auto it = macros_.constFind(l.word(at));
        if (it == macros_.constEnd())
            fault(QStringLiteral("unknown macro '%1'").arg(l.word(at)));
        const Macro& m = *it;
        if (l.tokens.size() - at - 1 != m.params.size())
            fault(QStringLiteral("macro '%1' takes %2 values").arg(l.word(at)).arg(m.params.size()));
        QHash<QString, double> local;
        for (int p = 0; p < m.params.size(); ++p)
            local[m.params[p]] = number(l, at + 1 + p, vars);
        const int caller = line_;
        run(m.body, 0, m.body.size(), local, parts, depth + 1);
        line_ = caller;
    }

private:
    static double number(const SourceLine& l, int i, const QHash<QString, double>& vars) {
        if (i >= l.tokens.size())
            fault(QStringLiteral("'%1' needs more values").arg(l.word(0)));
        return ExpressionReader(l.word(i), vars).read();
    }

    // Reads `count` numbers from token 1 on; options follow them.
    static std::vector<double> numbers(const SourceLine& l, int count, const QHash<QString, double>& vars) {
        std::vector<double> v;
        for (int i = 1; i <= count; ++i)
            v.push_back(number(l, i, vars));
        return v;
    }

    static bool isOption(const Token& t) {
        if (t.quoted)
            return false;
        static const QStringList flags = {QStringLiteral("fill"), QStringLiteral("dash"),
                                          QStringLiteral("arrow"), QStringLiteral("bold")};
        return flags.contains(t.text) || t.text.startsWith(QLatin1String("fill=")) ||
               t.text.startsWith(QLatin1String("weight=")) || t.text.startsWith(QLatin1String("size="));
    }

    static void options(const SourceLine& l, int from, PartStyle& st) {
        for (int i = from; i < l.tokens.size(); ++i) {
            const QString& o = l.word(i);
            if (!isOption(l.tokens[i]))
                fault(QStringLiteral("unknown option '%1'").arg(o));
            if (o == QLatin1String("fill")) {
                st.fill = DefaultFill;
            } else if (o.startsWith(QLatin1String("fill="))) {
                const QColor c(o.mid(5));
                if (!c.isValid())
                    fault(QStringLiteral("bad colour '%1'").arg(o));
                st.fill = c;
            } else if (o == QLatin1String("dash")) {
                st.dashed = true;
            } else if (o == QLatin1String("arrow")) {
                st.arrow = true;
            } else if (o == QLatin1String("bold")) {
                st.bold = true;
            } else {
                bool ok = false;
                const int v = o.mid(o.indexOf(u'=') + 1).toInt(&ok);
                if (!ok || v < 0)
                    fault(QStringLiteral("bad value in '%1'").arg(o));
                (o.startsWith(QLatin1String("weight=")) ? st.weight : st.fontSize) = v;
            }
        }
    }

    // Index of the first option token (or the end) from `from` on.
    static int firstOption(const SourceLine& l, int from) {
        int i = from;
        while (i < l.tokens.size() && !isOption(l.tokens[i]))
            ++i;
        return i;
    }

    static Part part(const SourceLine& l, const QHash<QString, double>& vars) {
        Part p;
        const QString& cmd = l.word(0);
        int optionsAt = 0;
        if (cmd == QLatin1String("line")) {
            const auto v = numbers(l, 4, vars);
            p.kind = Part::Kind::Line;
            p.points = {{v[0], v[1]}, {v[2], v[3]}};
            optionsAt = 5;
        } else if (cmd == QLatin1String("rect")) {
            const auto v = numbers(l, 4, vars);
            p.kind = Part::Kind::Rect;
            p.box = QRectF(v[0], v[1], v[2], v[3]).normalized();
            optionsAt = 5;
        } else if (cmd == QLatin1String("circle")) {
            const auto v = numbers(l, 3, vars);
            p.kind = Part::Kind::Ellipse;
            p.box = QRectF(v[0] - v[2], v[1] - v[2], 2 * v[2], 2 * v[2]);
            optionsAt = 4;
        } else if (cmd == QLatin1String("ellipse")) {
            const auto v = numbers(l, 4, vars);
            p.kind = Part::Kind::Ellipse;
            p.box = QRectF(v[0] - v[2], v[1] - v[3], 2 * v[2], 2 * v[3]);
            optionsAt = 5;
        } else if (cmd == QLatin1String("arc")) {
            const auto v = numbers(l, 5, vars);
            p.kind = Part::Kind::Arc;
            p.centre = {v[0], v[1]};
            p.radius = v[2];
            p.startDeg = v[3];
            p.sweepDeg = v[4];
            if (p.radius <= 0 || p.sweepDeg == 0)
                fault(QStringLiteral("an arc needs a radius and a sweep"));
            optionsAt = 6;
        } else if (cmd == QLatin1String("polygon") || cmd == QLatin1String("polyline")) {
            p.kind = cmd == QLatin1String("polygon") ? Part::Kind::Polygon : Part::Kind::Polyline;
            optionsAt = firstOption(l, 1);
            const int n = optionsAt - 1;
            if (n < 4 || n % 2 != 0)
                fault(QStringLiteral("%1 needs pairs of values, two points at least").arg(cmd));
            const auto v = numbers(l, n, vars);
            for (int i = 0; i < n; i += 2)
                p.points.emplace_back(v[i], v[i + 1]);
        } else if (cmd == QLatin1String("mask")) {
            const auto v = numbers(l, 4, vars);
            p.kind = Part::Kind::Mask;
            p.box = QRectF(v[0], v[1], v[2], v[3]);
            if (p.box.width() <= 0 || p.box.height() < 0)
                fault(QStringLiteral("a mask needs a width and a depth of 0 or more"));
            if (l.tokens.size() > 5)
                fault(QStringLiteral("a mask takes no options"));
            optionsAt = 5;
        } else if (cmd == QLatin1String("text")) {
            const auto v = numbers(l, 4, vars);
            if (l.tokens.size() < 6 || !l.tokens[5].quoted)
                fault(QStringLiteral("text needs its box and a quoted text"));
            p.kind = Part::Kind::Text;
            p.box = QRectF(v[0], v[1], v[2], v[3]).normalized();
            p.text = l.word(5);
            optionsAt = 6;
        } else {
            fault(QStringLiteral("unknown command '%1'").arg(cmd));
        }
        options(l, optionsAt, p.style);
        return p;
    }

    const QHash<QString, Macro>& macros_;
    int line_ = 0;
};

class CatalogueReader {
public:
    explicit CatalogueReader(const QString& text) : text_(text) {}

    Catalogue read() {
        const QStringList raw = text_.split(u'\n');
        for (int i = 0; i < raw.size(); ++i) {
            line_ = i + 1;
            SourceLine l{i + 1, tokenize(raw[i])};
            if (!l.tokens.isEmpty())
                lines_.push_back(l);
        }
        Catalogue c;
        size_t i = 0;
        while (i < lines_.size()) {
            const SourceLine& l = lines_[i];
            line_ = l.number;
            if (l.isWord(0, "macro")) {
                i = macro(i);
            } else if (l.isWord(0, "library")) {
                c.libraries.push_back(library(l));
                ++i;
            } else if (l.isWord(0, "symbol")) {
                if (c.libraries.empty())
                    fault(QStringLiteral("a symbol before the first library"));
                i = symbol(i, c.libraries.back());
            } else {
                fault(QStringLiteral("expected macro, library or symbol"));
            }
        }
        return c;
    }

    int line() const { return line_; }

private:
    // The line of the "end" that closes the block opened at `open`.
    size_t blockEnd(size_t open) const {
        int depth = 0;
        for (size_t j = open; j < lines_.size(); ++j) {
            const SourceLine& l = lines_[j];
            if (j == open || l.isWord(0, "repeat"))
                ++depth;
            else if (l.isWord(0, "end") && --depth == 0)
                return j;
        }
        fault(QStringLiteral("'%1' has no 'end'").arg(lines_[open].word(0)));
    }

    size_t macro(size_t open) {
        const SourceLine& l = lines_[open];
        if (l.tokens.size() < 2)
            fault(QStringLiteral("macro needs a name"));
        const size_t close = blockEnd(open);
        Macro m;
        for (int t = 2; t < l.tokens.size(); ++t)
            m.params << l.word(t);
        m.body.assign(lines_.begin() + static_cast<long>(open) + 1,
                      lines_.begin() + static_cast<long>(close));
        macros_.insert(l.word(1), m);
        return close + 1;
    }

    static Library library(const SourceLine& l) {
        if (l.tokens.size() < 4 || !l.tokens[1].quoted || !l.tokens[2].quoted)
            fault(QStringLiteral("library needs a quoted title, a quoted file name and its kind"));
        Library lib;
        lib.title = l.word(1);
        lib.filePattern = l.word(2);
        for (int t = 3; t < l.tokens.size(); ++t) {
            const QString& w = l.word(t);
            bool ok = true;
            if (w == QLatin1String("scaled"))
                lib.scaled = true;
            else if (w.startsWith(QLatin1String("fixed=")))
                lib.drawScale = w.mid(6).toInt(&ok);
            else if (w.startsWith(QLatin1String("columns=")))
                lib.columns = w.mid(8).toInt(&ok);
            else
                ok = false;
            if (!ok || lib.drawScale < 1 || lib.columns < 1)
                fault(QStringLiteral("bad library option '%1'").arg(w));
        }
        if (lib.scaled != lib.filePattern.contains(QLatin1String("{scale}")))
            fault(QStringLiteral("a scaled library names its files with {scale}, a fixed one without"));
        return lib;
    }

    size_t symbol(size_t open, Library& lib) {
        const SourceLine& l = lines_[open];
        if (l.tokens.size() < 2 || !l.tokens[1].quoted)
            fault(QStringLiteral("symbol needs a quoted name"));
        Symbol s;
        s.name = l.word(1);
        int at = 2;
        const bool mirror = l.isWord(at, "mirror");
        if (mirror)
            ++at;
        Builder b(macros_);
        QHash<QString, double> vars;
        size_t next = open + 1;
        if (l.isWord(at, "use")) {
            b.use(l, at + 1, vars, s.parts, 0);
        } else if (at == l.tokens.size()) {
            const size_t close = blockEnd(open);
            try {
                b.run(lines_, open + 1, close, vars, s.parts, 0);
            } catch (const SyntaxFault&) {
                line_ = b.line();
                throw;
            }
            next = close + 1;
        } else {
            fault(QStringLiteral("unexpected '%1' after the symbol's name").arg(l.word(at)));
        }
        if (s.parts.empty())
            fault(QStringLiteral("symbol '%1' has no parts").arg(s.name));
        if (mirror) {
            const QRectF e = s.extent();
            const double axis = (e.left() + e.right()) / 2;
            for (Part& p : s.parts)
                p = p.mirrored(axis);
        }
        for (const Symbol& other : lib.symbols)
            if (other.name == s.name)
                fault(QStringLiteral("symbol '%1' is named twice").arg(s.name));
        lib.symbols.push_back(std::move(s));
        return next;
    }

    const QString& text_;
    std::vector<SourceLine> lines_;
    QHash<QString, Macro> macros_;
    int line_ = 0;
};

} // namespace

Catalogue parseCatalogue(const QString& text, const QString& sourceName) {
    CatalogueReader reader(text);
    try {
        return reader.read();
    } catch (const SyntaxFault& f) {
        raiseError(err::InvalidProcedureCall, QStringLiteral("%1, line %2: %3")
                                                  .arg(sourceName)
                                                  .arg(reader.line())
                                                  .arg(QString::fromStdString(f.what())));
    }
}

double evaluateExpression(const QString& expression, const QHash<QString, double>& names) {
    try {
        return ExpressionReader(expression, names).read();
    } catch (const SyntaxFault& f) {
        raiseError(err::InvalidProcedureCall, QString::fromStdString(f.what()));
    }
}

} // namespace tessaly::templates
