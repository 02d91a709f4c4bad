#include "PdrFormat.h"

#include "canvas/model/ShapeTypes.h"
#include "core/runtime/RuntimeError.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>
#include <QtEndian>
#include <array>
#include <cmath>
#include <cstring>
#include <unordered_map>

namespace tessaly::canvas::pdr {

namespace {

constexpr char Magic[8] = {'T', 'E', 'S', 'S', 'P', 'D', 'R', '\x1a'}; // file signature
constexpr int MaxGroupDepth = 32;                                      // nesting of groups a file may hold
constexpr int MaxFontSize = 4000;                                      // points
constexpr int MaxPageMm = 10000000;                                    // ten kilometres of paper
constexpr int MaxArrowSize = 1000;                                     // mm
constexpr int MaxLineWeight = 10000;                                   // line units
constexpr double MaxCoordinate = 1e9; // mm; beyond this a coordinate is taken as damage
constexpr uint32_t TrailerSize = 4;   // the CRC-32 after the end chunk
constexpr uint32_t HeaderSize = 16;   // magic, version, flags

// Chunk tags, four ASCII characters read as a little-endian number.
constexpr uint32_t tag(const char (&t)[5]) {
    return static_cast<uint32_t>(static_cast<unsigned char>(t[0])) |
           static_cast<uint32_t>(static_cast<unsigned char>(t[1])) << 8 |
           static_cast<uint32_t>(static_cast<unsigned char>(t[2])) << 16 |
           static_cast<uint32_t>(static_cast<unsigned char>(t[3])) << 24;
}
constexpr uint32_t TagPage = tag("PAGE");
constexpr uint32_t TagTag = tag("DTAG");
constexpr uint32_t TagGuides = tag("GUID");
constexpr uint32_t TagBlobs = tag("BLOB");
constexpr uint32_t TagStyles = tag("STYL");
constexpr uint32_t TagShapes = tag("SHAP");
constexpr uint32_t TagEnd = tag("END ");

// Bits of a shape record's extra mask.
constexpr uint8_t HasText = 1;
constexpr uint8_t HasPoints = 2;
constexpr uint8_t HasPicture = 4;
constexpr uint8_t HasChildren = 8;
constexpr uint8_t HasLink = 16;
constexpr uint8_t KnownExtra = 31;

std::array<uint32_t, 256> makeCrcTable() {
    std::array<uint32_t, 256> t{};
    for (uint32_t i = 0; i < 256; ++i) {
        uint32_t c = i;
        for (int k = 0; k < 8; ++k)
            c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        t[i] = c;
    }
    return t;
}

// --- writing -------------------------------------------------------------

class Writer {
public:
    explicit Writer(QByteArray& out) : out_(out) {}
    template <class T> void put(T v) {
        v = qToLittleEndian(v);
        out_.append(reinterpret_cast<const char*>(&v), sizeof(T));
    }
    void u8(uint8_t v) { out_.append(static_cast<char>(v)); }
    void u16(uint16_t v) { put(v); }
    void i16(int16_t v) { put(v); }
    void u32(uint32_t v) { put(v); }
    void i32(int32_t v) { put(v); }
    void u64(uint64_t v) { put(v); }
    void f64(double v) {
        uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        put(bits);
    }
    void str(const QString& s) {
        const QByteArray utf8 = s.toUtf8();
        u32(static_cast<uint32_t>(utf8.size()));
        out_.append(utf8);
    }
    void bytes(const QByteArray& b) {
        u32(static_cast<uint32_t>(b.size()));
        out_.append(b);
    }
    // Starts a chunk; returns the offset of its length field for `finish`.
    qsizetype begin(uint32_t chunkTag) {
        u32(chunkTag);
        const qsizetype at = out_.size();
        u64(0);
        return at;
    }
    void finish(qsizetype at) {
        const uint64_t length = qToLittleEndian<uint64_t>(static_cast<uint64_t>(out_.size() - at - 8));
        std::memcpy(out_.data() + at, &length, sizeof length);
    }

private:
    QByteArray& out_;
};

struct StyleHash {
    size_t operator()(const ShapeStyle& s) const {
        size_t h = std::hash<uint32_t>()(s.fill.colour) ^ (std::hash<int>()(s.fill.type) << 1);
        h ^= std::hash<uint32_t>()(s.line.colour) * 31 + std::hash<int>()(s.line.weight);
        h ^= qHash(s.font.name) * 17 + static_cast<size_t>(s.font.size);
        h ^= static_cast<size_t>(s.lens.type * 7 + s.lens.percent) << 3;
        return h;
    }
};

class Encoder {
public:
    QByteArray run(const std::vector<ShapePtr>& shapes, const PageState& state) {
        for (const ShapePtr& s : shapes)
            collect(*s);
        QByteArray out;
        out.reserve(static_cast<qsizetype>(64 + styles_.size() * 64 + shapes.size() * 56));
        Writer w(out);
        out.append(Magic, sizeof Magic);
        w.u16(VersionMajor);
        w.u16(VersionMinor);
        w.u32(0); // flags, none defined
        writePage(w, state.page);
        qsizetype at = w.begin(TagTag);
        w.str(state.drawingTag);
        w.finish(at);
        at = w.begin(TagGuides);
        writeInts(w, state.horizontalGuides);
        writeInts(w, state.verticalGuides);
        w.finish(at);
        at = w.begin(TagBlobs);
        w.u32(static_cast<uint32_t>(blobs_.size()));
        for (const PicturePtr& p : blobs_)
            w.bytes(p->data());
        w.finish(at);
        at = w.begin(TagStyles);
        w.u32(static_cast<uint32_t>(styles_.size()));
        for (const ShapeStyle* s : styles_)
            writeStyle(w, *s);
        w.finish(at);
        at = w.begin(TagShapes);
        w.u32(static_cast<uint32_t>(shapes.size()));
        for (const ShapePtr& s : shapes)
            writeShape(w, *s);
        w.finish(at);
        w.u32(TagEnd);
        w.u64(0);
        w.u32(crc32(out.constData(), static_cast<size_t>(out.size())));
        return out;
    }

private:
    void collect(const ShapeData& s) {
        const ShapeStyle* st = &s.st();
        if (!styleIndex_.count(st)) {
            auto [it, fresh] = styleByValue_.try_emplace(*st, static_cast<uint32_t>(styles_.size()));
            if (fresh)
                styles_.push_back(st);
            styleIndex_[st] = it->second;
            if (st->fill.texture)
                blob(st->fill.texture);
        }
        if (s.extra) {
            if (s.extra->picture)
                blob(s.extra->picture);
            for (const ShapePtr& c : s.extra->children)
                collect(*c);
        }
    }
    int32_t blob(const PicturePtr& p) {
        auto it = blobIndex_.find(p.get());
        if (it != blobIndex_.end())
            return it->second;
        for (size_t i = 0; i < blobs_.size(); ++i)
            if (blobs_[i]->data() == p->data())
                return blobIndex_[p.get()] = static_cast<int32_t>(i);
        blobs_.push_back(p);
        return blobIndex_[p.get()] = static_cast<int32_t>(blobs_.size() - 1);
    }
    static void writeInts(Writer& w, const std::vector<int>& v) {
        w.u32(static_cast<uint32_t>(v.size()));
        for (int x : v)
            w.i32(x);
    }
    static void writePage(Writer& w, const PageSettings& p) {
        const qsizetype at = w.begin(TagPage);
        w.i32(p.width);
        w.i32(p.height);
        w.u8(p.landscape);
        w.u32(p.paperColour);
        w.u32(p.outlineColour);
        w.u32(p.shadowColour);
        w.u8(p.showPaper);
        w.u8(p.showOutline);
        w.u8(p.showShadow);
        w.u32(p.gridColour);
        w.u32(p.guideColour);
        w.i32(p.gridSpacingX);
        w.i32(p.gridSpacingY);
        w.finish(at);
    }
    void writeStyle(Writer& w, const ShapeStyle& s) {
        w.u8(static_cast<uint8_t>(s.fill.type));
        w.u32(s.fill.colour);
        w.u32(s.fill.backColour);
        w.u8(static_cast<uint8_t>(s.fill.shade));
        w.u8(static_cast<uint8_t>(s.fill.hatch));
        w.i32(s.fill.texture ? blob(s.fill.texture) : -1);
        w.u8(static_cast<uint8_t>(s.line.style));
        w.u32(s.line.colour);
        w.i32(s.line.weight);
        w.u8(static_cast<uint8_t>(s.line.arrowStart));
        w.u8(static_cast<uint8_t>(s.line.arrowEnd));
        w.i32(s.line.arrowSize);
        w.u8(s.shadow.visible);
        w.u32(s.shadow.colour);
        w.i32(s.shadow.offsetX);
        w.i32(s.shadow.offsetY);
        w.str(s.font.name);
        w.i32(s.font.size);
        w.u8(s.font.bold);
        w.u8(s.font.italic);
        w.u8(s.lens.active);
        w.i32(s.lens.type);
        w.i32(s.lens.percent);
        w.u32(s.lens.startColour);
        w.u32(s.lens.endColour);
    }
    void writeShape(Writer& w, const ShapeData& s) {
        w.i32(s.id);
        w.i16(s.type);
        w.i16(s.rotation);
        w.u16(s.flags);
        w.u32(styleIndex_.at(&s.st()));
        w.f64(s.left);
        w.f64(s.top);
        w.f64(s.right);
        w.f64(s.bottom);
        w.str(s.name);
        uint8_t mask = 0;
        const ShapeExtra* e = s.extra.get();
        if (e) {
            mask |= e->text.isEmpty() ? 0 : HasText;
            mask |= e->points.empty() ? 0 : HasPoints;
            mask |= e->picture ? HasPicture : 0;
            mask |= e->children.empty() ? 0 : HasChildren;
            mask |= (e->linkStart.shapeId || e->linkEnd.shapeId) ? HasLink : 0;
        }
        w.u8(mask);
        if (mask & HasText)
            w.str(e->text);
        if (mask & HasPoints) {
            w.u32(static_cast<uint32_t>(e->points.size()));
            for (const QPointF& p : e->points) {
                w.f64(p.x());
                w.f64(p.y());
            }
        }
        if (mask & HasPicture)
            w.i32(blob(e->picture));
        if (mask & HasChildren) {
            w.u32(static_cast<uint32_t>(e->children.size()));
            for (const ShapePtr& c : e->children)
                writeShape(w, *c);
        }
        if (mask & HasLink) {
            w.i32(e->linkStart.shapeId);
            w.i32(e->linkStart.pointIndex);
            w.i32(e->linkEnd.shapeId);
            w.i32(e->linkEnd.pointIndex);
        }
    }

    std::vector<const ShapeStyle*> styles_;
    std::unordered_map<const ShapeStyle*, uint32_t> styleIndex_;
    std::unordered_map<ShapeStyle, uint32_t, StyleHash> styleByValue_;
    std::vector<PicturePtr> blobs_;
    std::unordered_map<const CanvasPicture*, int32_t> blobIndex_;
};

// --- reading -------------------------------------------------------------

struct Damage {
    QString what;
};

class Reader {
public:
    Reader(const char* begin, const char* end) : p_(begin), end_(end) {}
    size_t left() const { return static_cast<size_t>(end_ - p_); }
    void need(size_t n, const char* what) const {
        if (left() < n)
            throw Damage{QStringLiteral("the file ends inside %1").arg(QLatin1String(what))};
    }
    template <class T> T get(const char* what) {
        need(sizeof(T), what);
        T v;
        std::memcpy(&v, p_, sizeof(T));
        p_ += sizeof(T);
        return qFromLittleEndian(v);
    }
    uint8_t u8(const char* w) { return get<uint8_t>(w); }
    bool flag(const char* w) {
        const uint8_t v = u8(w);
        if (v > 1)
            throw Damage{QStringLiteral("%1 is not a switch value").arg(QLatin1String(w))};
        return v == 1;
    }
    uint16_t u16(const char* w) { return get<uint16_t>(w); }
    int16_t i16(const char* w) { return get<int16_t>(w); }
    uint32_t u32(const char* w) { return get<uint32_t>(w); }
    int32_t i32(const char* w) { return get<int32_t>(w); }
    uint64_t u64(const char* w) { return get<uint64_t>(w); }
    double f64(const char* w) {
        const uint64_t bits = u64(w);
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v) || std::fabs(v) > MaxCoordinate)
            throw Damage{QStringLiteral("%1 is out of range").arg(QLatin1String(w))};
        return v;
    }
    QByteArray raw(const char* w) {
        const uint32_t n = u32(w);
        need(n, w);
        QByteArray b(p_, static_cast<qsizetype>(n));
        p_ += n;
        return b;
    }
    QString str(const char* w) {
        const uint32_t n = u32(w);
        need(n, w);
        QString s = QString::fromUtf8(p_, static_cast<qsizetype>(n));
        p_ += n;
        return s;
    }
    // A count of items of at least `itemSize` bytes each, checked against what is left.
    uint32_t count(size_t itemSize, const char* w) {
        const uint32_t n = u32(w);
        if (itemSize > 0 && n > left() / itemSize)
            throw Damage{QStringLiteral("the count of %1 is larger than the file").arg(QLatin1String(w))};
        return n;
    }
    const char* pos() const { return p_; }
    void skip(size_t n) { p_ += n; }

private:
    const char* p_;
    const char* end_;
};

int ranged(int v, int lo, int hi, const char* what) {
    if (v < lo || v > hi)
        throw Damage{QStringLiteral("%1 %2 is out of range").arg(QLatin1String(what)).arg(v)};
    return v;
}

Colour colour(Reader& r, const char* what) {
    const uint32_t c = r.u32(what);
    if (c > 0xFFFFFF)
        throw Damage{QStringLiteral("%1 is not a colour").arg(QLatin1String(what))};
    return c;
}

class Decoder {
public:
    Contents run(const QByteArray& bytes) {
        if (bytes.size() < static_cast<qsizetype>(HeaderSize + TrailerSize) ||
            std::memcmp(bytes.constData(), Magic, sizeof Magic) != 0)
            throw Damage{QStringLiteral("it is not a Tessaly drawing")};
        const size_t body = static_cast<size_t>(bytes.size()) - TrailerSize;
        uint32_t stored;
        std::memcpy(&stored, bytes.constData() + body, sizeof stored);
        Reader r(bytes.constData() + sizeof Magic, bytes.constData() + body);
        const int major = r.u16("the version");
        r.u16("the version");
        r.u32("the header");
        if (major > VersionMajor)
            throw Damage{
                QStringLiteral("it was written by a newer version of Tessaly (format %1)").arg(major)};
        if (major < 1)
            throw Damage{QStringLiteral("its format version %1 is unknown").arg(major)};
#ifndef TESSALY_FUZZING_BUILD // the fuzzer explores the fields behind the check sum
        if (qFromLittleEndian(stored) != crc32(bytes.constData(), body))
            throw Damage{QStringLiteral("its check sum does not match: the file is damaged or incomplete")};
#else
        (void)stored;
#endif
        bool sawPage = false, sawShapes = false, sawEnd = false;
        while (!sawEnd) {
            const uint32_t t = r.u32("a chunk header");
            const uint64_t length = r.u64("a chunk header");
            if (length > r.left())
                throw Damage{QStringLiteral("a chunk is longer than the file")};
            Reader c(r.pos(), r.pos() + length);
            r.skip(static_cast<size_t>(length));
            if (t == TagPage) {
                readPage(c);
                sawPage = true;
            } else if (t == TagTag) {
                out_.state.drawingTag = c.str("the drawing tag");
            } else if (t == TagGuides) {
                readGuides(c, out_.state.horizontalGuides);
                readGuides(c, out_.state.verticalGuides);
            } else if (t == TagBlobs) {
                readBlobs(c);
            } else if (t == TagStyles) {
                readStyles(c);
            } else if (t == TagShapes) {
                readShapes(c);
                sawShapes = true;
            } else if (t == TagEnd) {
                sawEnd = true;
            } // chunks of later minor versions are skipped
        }
        if (r.left() != 0)
            throw Damage{QStringLiteral("there are bytes after its end")};
        if (!sawPage || !sawShapes)
            throw Damage{QStringLiteral("the page or the shapes are missing")};
        return std::move(out_);
    }

private:
    void readPage(Reader& r) {
        PageSettings& p = out_.state.page;
        p.width = ranged(r.i32("the page width"), 1, MaxPageMm, "the page width");
        p.height = ranged(r.i32("the page height"), 1, MaxPageMm, "the page height");
        p.landscape = r.flag("the orientation");
        p.paperColour = colour(r, "the paper colour");
        p.outlineColour = colour(r, "the outline colour");
        p.shadowColour = colour(r, "the shadow colour");
        p.showPaper = r.flag("the paper switch");
        p.showOutline = r.flag("the outline switch");
        p.showShadow = r.flag("the shadow switch");
        p.gridColour = colour(r, "the grid colour");
        p.guideColour = colour(r, "the guide colour");
        p.gridSpacingX = ranged(r.i32("the grid spacing"), 0, MaxPageMm, "the grid spacing");
        p.gridSpacingY = ranged(r.i32("the grid spacing"), 0, MaxPageMm, "the grid spacing");
    }
    static void readGuides(Reader& r, std::vector<int>& out) {
        const uint32_t n = r.count(4, "the guide lines");
        out.reserve(n);
        for (uint32_t i = 0; i < n; ++i)
            out.push_back(r.i32("a guide line"));
    }
    void readBlobs(Reader& r) {
        const uint32_t n = r.count(4, "the pictures");
        for (uint32_t i = 0; i < n; ++i) {
            const QByteArray data = r.raw("a picture");
            try {
                blobs_.push_back(CanvasPicture::fromData(data));
            } catch (const RuntimeError&) {
                throw Damage{QStringLiteral("picture %1 cannot be read").arg(i + 1)};
            }
        }
    }
    PicturePtr blobAt(int32_t index) const {
        if (index < 0 || static_cast<size_t>(index) >= blobs_.size())
            throw Damage{QStringLiteral("a picture reference is out of range")};
        return blobs_[static_cast<size_t>(index)];
    }
    void readStyles(Reader& r) {
        const uint32_t n = r.count(40, "the styles");
        styles_.reserve(n);
        for (uint32_t i = 0; i < n; ++i) {
            ShapeStyle s;
            s.fill.type = ranged(r.u8("a fill"), 0, fill_type::Texture, "a fill type");
            s.fill.colour = colour(r, "a fill colour");
            s.fill.backColour = colour(r, "a fill colour");
            s.fill.shade = ranged(r.u8("a fill"), 0, shade::Count - 1, "a shade style");
            s.fill.hatch = ranged(r.u8("a fill"), 0, hatch::Count - 1, "a hatch pattern");
            const int32_t texture = r.i32("a fill");
            if (texture >= 0)
                s.fill.texture = blobAt(texture);
            s.line.style = ranged(r.u8("a line"), 0, line_style::Count - 1, "a line style");
            s.line.colour = colour(r, "a line colour");
            s.line.weight = ranged(r.i32("a line"), 0, MaxLineWeight, "a line weight");
            s.line.arrowStart = ranged(r.u8("a line"), 0, arrow::Count - 1, "an arrow head");
            s.line.arrowEnd = ranged(r.u8("a line"), 0, arrow::Count - 1, "an arrow head");
            s.line.arrowSize = ranged(r.i32("a line"), 0, MaxArrowSize, "an arrow size");
            s.shadow.visible = r.flag("a shadow");
            s.shadow.colour = colour(r, "a shadow colour");
            s.shadow.offsetX = ranged(r.i32("a shadow"), -MaxArrowSize, MaxArrowSize, "a shadow offset");
            s.shadow.offsetY = ranged(r.i32("a shadow"), -MaxArrowSize, MaxArrowSize, "a shadow offset");
            s.font.name = r.str("a font name");
            s.font.size = ranged(r.i32("a font"), 1, MaxFontSize, "a font size");
            s.font.bold = r.flag("a font");
            s.font.italic = r.flag("a font");
            s.lens.active = r.flag("a lens");
            s.lens.type = r.i32("a lens");
            if (!lens::isKnown(s.lens.type))
                throw Damage{QStringLiteral("lens type %1 is unknown").arg(s.lens.type)};
            s.lens.percent = ranged(r.i32("a lens"), -100, 100, "a lens percentage");
            s.lens.startColour = colour(r, "a lens colour");
            s.lens.endColour = colour(r, "a lens colour");
            styles_.push_back(std::make_shared<const ShapeStyle>(std::move(s)));
        }
    }
    void readShapes(Reader& r) {
        const uint32_t n = r.count(51, "the shapes");
        out_.shapes.reserve(n);
        for (uint32_t i = 0; i < n; ++i)
            out_.shapes.push_back(readShape(r, 0));
        if (r.left() != 0)
            throw Damage{QStringLiteral("the shape list has bytes after its last shape")};
    }
    void claimId(int32_t id) {
        if (id <= 0 || id >= MaxShapeId)
            throw Damage{QStringLiteral("shape id %1 is out of range").arg(id)};
        if (static_cast<size_t>(id) >= idSeen_.size())
            idSeen_.resize(std::max<size_t>(static_cast<size_t>(id) + 1, idSeen_.size() * 2));
        if (idSeen_[static_cast<size_t>(id)])
            throw Damage{QStringLiteral("shape id %1 occurs twice").arg(id)};
        idSeen_[static_cast<size_t>(id)] = true;
    }
    ShapePtr readShape(Reader& r, int depth) {
        if (depth > MaxGroupDepth)
            throw Damage{QStringLiteral("groups are nested too deeply")};
        auto s = std::make_shared<ShapeData>();
        s->id = r.i32("a shape");
        claimId(s->id);
        s->type = r.i16("a shape");
        if (!shape_type::isKnown(s->type))
            throw Damage{QStringLiteral("shape type %1 is unknown").arg(s->type)};
        s->rotation = static_cast<int16_t>(ranged(r.i16("a shape"), 0, 359, "a rotation"));
        s->flags = r.u16("a shape");
        if (s->flags & ~shape_flag::Known)
            throw Damage{QStringLiteral("a shape has unknown flags")};
        const uint32_t style = r.u32("a shape");
        if (style >= styles_.size())
            throw Damage{QStringLiteral("a style reference is out of range")};
        s->style = styles_[style];
        s->left = r.f64("a shape's edge");
        s->top = r.f64("a shape's edge");
        s->right = r.f64("a shape's edge");
        s->bottom = r.f64("a shape's edge");
        s->name = r.str("a shape name");
        const uint8_t mask = r.u8("a shape");
        if (mask & ~KnownExtra)
            throw Damage{QStringLiteral("a shape has unknown parts")};
        if (mask) {
            ShapeExtra e;
            if (mask & HasText)
                e.text = r.str("a shape text");
            if (mask & HasPoints) {
                const uint32_t np = r.count(16, "the points of a shape");
                e.points.reserve(np);
                for (uint32_t i = 0; i < np; ++i) {
                    const double x = r.f64("a point");
                    const double y = r.f64("a point");
                    e.points.emplace_back(x, y);
                }
            }
            if (mask & HasPicture)
                e.picture = blobAt(r.i32("a picture reference"));
            if (mask & HasChildren) {
                if (s->type != shape_type::Group)
                    throw Damage{QStringLiteral("a shape that is no group has members")};
                const uint32_t nc = r.count(51, "the members of a group");
                for (uint32_t i = 0; i < nc; ++i)
                    e.children.push_back(readShape(r, depth + 1));
            }
            if (mask & HasLink) {
                e.linkStart.shapeId = r.i32("a link");
                e.linkStart.pointIndex = ranged(r.i32("a link"), 0, 4, "a connection point");
                e.linkEnd.shapeId = r.i32("a link");
                e.linkEnd.pointIndex = ranged(r.i32("a link"), 0, 4, "a connection point");
            }
            s->extra = std::make_shared<const ShapeExtra>(std::move(e));
        }
        if (s->type == shape_type::Group && (!s->extra || s->extra->children.empty()))
            throw Damage{QStringLiteral("a group has no members")};
        return s;
    }

    Contents out_;
    std::vector<StylePtr> styles_;
    std::vector<PicturePtr> blobs_;
    std::vector<bool> idSeen_;
};

} // namespace

uint32_t crc32(const char* data, size_t size) {
    static const std::array<uint32_t, 256> table = makeCrcTable();
    uint32_t c = 0xFFFFFFFFu;
    const auto* p = reinterpret_cast<const unsigned char*>(data);
    for (size_t i = 0; i < size; ++i)
        c = table[(c ^ p[i]) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

QByteArray encode(const std::vector<ShapePtr>& shapes, const PageState& state) {
    return Encoder().run(shapes, state);
}

Contents decode(const QByteArray& bytes) {
    try {
        return Decoder().run(bytes);
    } catch (const Damage& d) {
        raiseError(err::CanvasFile, QStringLiteral("The drawing file cannot be read: %1.").arg(d.what));
    } catch (const std::bad_alloc&) {
        raiseError(err::CanvasFile, QStringLiteral("The drawing file cannot be read: it is too large."));
    }
}

Contents readFile(const QString& hostPath) {
    QFile file(hostPath);
    if (hostPath.isEmpty() || !QFileInfo(hostPath).isFile())
        raiseError(err::CanvasFile, QStringLiteral("The drawing file %1 does not exist.").arg(hostPath));
    if (!file.open(QIODevice::ReadOnly))
        raiseError(err::CanvasFile, QStringLiteral("The drawing file %1 cannot be opened.").arg(hostPath));
    const QByteArray bytes = file.readAll();
    try {
        return decode(bytes);
    } catch (const RuntimeError& e) {
        QString text = e.description();
        text.replace(QStringLiteral("The drawing file"), QStringLiteral("The drawing file ") + hostPath);
        raiseError(err::CanvasFile, text);
    }
}

namespace {
// Why a write of `size` bytes to `hostPath` failed: a disk without room for
// the drawing says so, since a write that stops part way often leaves the
// platform no text of its own.
QString writeFailure(const QString& hostPath, qsizetype size, const QString& reason) {
    const QStorageInfo disk(QFileInfo(hostPath).absolutePath());
    const bool full = disk.isValid() && disk.bytesAvailable() < size;
    return QStringLiteral("The drawing file %1 cannot be written: %2")
        .arg(hostPath, full ? QStringLiteral("the disk is full") : reason);
}
} // namespace

QString writeFile(const QString& hostPath, const std::vector<ShapePtr>& shapes, const PageState& state) {
    const QByteArray bytes = encode(shapes, state);
    QSaveFile file(hostPath);
    if (!file.open(QIODevice::WriteOnly))
        return writeFailure(hostPath, bytes.size(), file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return writeFailure(hostPath, bytes.size(), reason);
    }
    if (!file.commit())
        return writeFailure(hostPath, bytes.size(), file.errorString());
    return {};
}

} // namespace tessaly::canvas::pdr
