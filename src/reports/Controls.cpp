#include "Controls.h"

#include "OutputFormat.h"
#include "ReportPage.h"
#include "Twips.h"

#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "metafile/Picture.h"

#include <algorithm>

namespace tessaly::reports {

namespace {

// Twips in a pixel of a 96-dpi screen, the unit of line weights.
constexpr double TwipsPerScreenPixel = 15.0;
// 0.01 mm units in an inch, the unit of picture sizes.
constexpr double HiMetricPerInch = 2540.0;
// The picture type codes the program reads from a picture.
constexpr int PicTypeNone = 0;
constexpr int PicTypeBitmap = 1;
constexpr int PicTypeMetafile = 2;
constexpr int PicTypeEnhancedMetafile = 4;

QColor fromColourRef(unsigned colour) {
    return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                  static_cast<int>((colour >> 16) & 0xFF));
}

int qtAlignment(int alignment) {
    switch (alignment) {
    case text_align::Right:
        return Qt::AlignRight | Qt::AlignTop;
    case text_align::Center:
        return Qt::AlignHCenter | Qt::AlignTop;
    default:
        return Qt::AlignLeft | Qt::AlignTop;
    }
}

// The picture's type and size in 0.01 mm, as the program reads them.
class PictureInfo final : public EngineObject {
public:
    explicit PictureInfo(std::shared_ptr<const metafile::Picture> picture) : picture_(std::move(picture)) {
        property(QStringLiteral("Type"), [this] { return type(); });
        property(QStringLiteral("Width"), [this] { return picture_ ? picture_->widthHiMetric() : 0; });
        property(QStringLiteral("Height"), [this] { return picture_ ? picture_->heightHiMetric() : 0; });
    }
    QString typeName() const override { return QStringLiteral("Picture"); }

private:
    int type() const {
        if (!picture_)
            return PicTypeNone;
        switch (picture_->kind()) {
        case metafile::Picture::Kind::Bitmap:
            return PicTypeBitmap;
        case metafile::Picture::Kind::Wmf:
            return PicTypeMetafile;
        case metafile::Picture::Kind::Emf:
            return PicTypeEnhancedMetafile;
        default:
            return PicTypeNone;
        }
    }
    std::shared_ptr<const metafile::Picture> picture_;
};

// Places a box of `size` in `area` by a picture alignment.
QRectF aligned(const QSizeF& size, const QRectF& area, int alignment) {
    double x = area.left(), y = area.top();
    const double spareX = area.width() - size.width();
    const double spareY = area.height() - size.height();
    switch (alignment) {
    case picture_align::TopRight:
        x += spareX;
        break;
    case picture_align::Center:
        x += spareX / 2;
        y += spareY / 2;
        break;
    case picture_align::BottomLeft:
        y += spareY;
        break;
    case picture_align::BottomRight:
        x += spareX;
        y += spareY;
        break;
    default:
        break;
    }
    return {QPointF(x, y), size};
}

} // namespace

// --- text controls -------------------------------------------------------------

TextControl::TextControl(QString name) : ReportControl(std::move(name)) {
    boxProperties();
    property(
        QStringLiteral("FontName"), [this] { return FontName; },
        [this](const QVariant& v) { FontName = vb::toText(v); });
    property(
        QStringLiteral("FontSize"), [this] { return FontSize; },
        [this](const QVariant& v) { FontSize = vb::toDouble(v); });
    property(
        QStringLiteral("FontBold"), [this] { return FontBold; },
        [this](const QVariant& v) { FontBold = vb::toBool(v); });
    property(
        QStringLiteral("FontItalic"), [this] { return FontItalic; },
        [this](const QVariant& v) { FontItalic = vb::toBool(v); });
    property(
        QStringLiteral("ForeColor"), [this] { return static_cast<qint64>(ForeColor); },
        [this](const QVariant& v) { ForeColor = static_cast<unsigned>(vb::toDouble(v)); });
    property(
        QStringLiteral("Alignment"), [this] { return Alignment; },
        [this](const QVariant& v) { Alignment = vb::toInt32(v); });
}

void TextControl::place(const Placement& where) const {
    const QString text = shownText();
    if (text.isEmpty())
        return;
    QFont font(FontName);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(FontSize * TwipsPerPoint))));
    font.setBold(FontBold);
    font.setItalic(FontItalic);
    where.page.add(
        PageText{boxAt(where.origin), text, font, qtAlignment(Alignment), fromColourRef(ForeColor)});
}

Label::Label(QString name, QString caption) : TextControl(std::move(name)), Caption(std::move(caption)) {
    property(
        QStringLiteral("Caption"), [this] { return Caption; },
        [this](const QVariant& v) { Caption = vb::toText(v); });
}

Field::Field(QString name) : TextControl(std::move(name)) {
    property(
        QStringLiteral("DataField"), [this] { return DataField; },
        [this](const QVariant& v) { DataField = vb::toText(v); });
    property(
        QStringLiteral("OutputFormat"), [this] { return OutputFormat; },
        [this](const QVariant& v) { OutputFormat = vb::toText(v); });
    property(
        QStringLiteral("SummaryType"), [this] { return SummaryType; },
        [this](const QVariant& v) { SummaryType = vb::toInt32(v); });
    property(
        QStringLiteral("SummaryFunc"), [this] { return SummaryFunc; },
        [this](const QVariant& v) { SummaryFunc = vb::toInt32(v); });
    property(
        QStringLiteral("Value"), [this] { return value_; }, [this](const QVariant& v) { setValue(v); });
    property(
        QStringLiteral("Text"), [this] { return text_; },
        [this](const QVariant& v) { text_ = vb::toText(v); });
}

void Field::setValue(const QVariant& value) {
    value_ = value;
    text_ = formatValue(value, OutputFormat);
}

// --- lines ----------------------------------------------------------------------

LineControl::LineControl(QString name) : ReportControl(std::move(name)) {
    const auto coordinate = [this](const char* member_name, double& member) {
        property(
            QString::fromLatin1(member_name), [&member] { return member; },
            [&member](const QVariant& v) { member = vb::toDouble(v); });
    };
    coordinate("X1", X1);
    coordinate("Y1", Y1);
    coordinate("X2", X2);
    coordinate("Y2", Y2);
    property(
        QStringLiteral("LineWeight"), [this] { return LineWeight; },
        [this](const QVariant& v) { LineWeight = vb::toDouble(v); });
    property(
        QStringLiteral("LineColor"), [this] { return static_cast<qint64>(LineColor); },
        [this](const QVariant& v) { LineColor = static_cast<unsigned>(vb::toDouble(v)); });
}

void LineControl::place(const Placement& where) const {
    const QPointF o = where.origin;
    where.page.add(PageLine{QLineF(o.x() + X1, o.y() + Y1, o.x() + X2, o.y() + Y2),
                            LineWeight <= 1 ? 0.0 : LineWeight * TwipsPerScreenPixel,
                            fromColourRef(LineColor)});
}

// --- images ---------------------------------------------------------------------

ImageControl::ImageControl(QString name) : ReportControl(std::move(name)) {
    boxProperties();
    property(
        QStringLiteral("SizeMode"), [this] { return SizeMode; },
        [this](const QVariant& v) { SizeMode = vb::toInt32(v); });
    property(
        QStringLiteral("PictureAlignment"), [this] { return PictureAlignment; },
        [this](const QVariant& v) { PictureAlignment = vb::toInt32(v); });
    // Read: the picture's type and size. Written from a script: a path loads
    // that file (errors 53 and 481 as the loader gives them); "" empties it.
    property(
        QStringLiteral("Picture"), [this] { return toVariant(std::make_shared<PictureInfo>(picture_)); },
        [this](const QVariant& v) {
            const QString path = vb::toText(v);
            picture_ =
                path.isEmpty()
                    ? nullptr
                    : std::make_shared<const metafile::Picture>(metafile::loadPicture(fs::toHost(path)));
        });
}

QRectF ImageControl::pictureBox(const QPointF& origin, const QRectF& printable) const {
    const QRectF box = boxAt(origin);
    if (!picture_ || picture_->isNull())
        return {};
    const QSizeF natural(picture_->widthHiMetric() * TwipsPerInch / HiMetricPerInch,
                         picture_->heightHiMetric() * TwipsPerInch / HiMetricPerInch);
    switch (SizeMode) {
    case size_mode::Stretch:
        return box;
    case size_mode::Zoom: {
        const QRectF area = box.intersected(printable);
        if (area.isEmpty() || natural.isEmpty())
            return {};
        const double scale = std::min(area.width() / natural.width(), area.height() / natural.height());
        return aligned(natural * scale, area, PictureAlignment);
    }
    default:
        return aligned(natural, box, PictureAlignment);
    }
}

void ImageControl::place(const Placement& where) const {
    const QRectF box = pictureBox(where.origin, where.printable);
    if (box.isEmpty())
        return;
    const QRectF clip = SizeMode == size_mode::Clip ? boxAt(where.origin) : QRectF();
    where.page.add(PagePicture{box, clip, picture_});
}

} // namespace tessaly::reports
