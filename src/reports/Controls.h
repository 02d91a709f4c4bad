#pragma once

#include "ReportControl.h"

#include <QColor>
#include <QVariant>
#include <memory>

namespace tessaly::metafile {
class Picture;
}

namespace tessaly::reports {

// Alignment of a text control's text.
namespace text_align {
constexpr int Left = 0;
constexpr int Right = 1;
constexpr int Center = 2;
} // namespace text_align

// What a field sums up, and over which rows.
namespace summary_type {
constexpr int None = 0;       // the value of the current row
constexpr int GrandTotal = 1; // over every row of the run
constexpr int PageTotal = 2;  // over the rows of the page
} // namespace summary_type
namespace summary_func {
constexpr int Sum = 0;
constexpr int Avg = 1;
constexpr int Count = 2;
constexpr int Min = 3;
constexpr int Max = 4;
} // namespace summary_func

// How a picture fills its image control.
namespace size_mode {
constexpr int Clip = 0;    // at its own size, cut off at the control's edges
constexpr int Stretch = 1; // stretched to the control's box
constexpr int Zoom = 2;    // as large as fits, its proportions kept
} // namespace size_mode
// Where a picture that does not fill its control lies in it.
namespace picture_align {
constexpr int TopLeft = 0;
constexpr int TopRight = 1;
constexpr int Center = 2;
constexpr int BottomLeft = 3;
constexpr int BottomRight = 4;
} // namespace picture_align

// A control that prints a line of text in its box: a font, a colour and an alignment.
class TextControl : public ReportControl {
public:
    explicit TextControl(QString name);

    QString FontName = QStringLiteral("Arial");
    double FontSize = 10; // points
    bool FontBold = false;
    bool FontItalic = false;
    unsigned ForeColor = 0; // 0x00BBGGRR
    int Alignment = text_align::Left;

    // The text the control prints.
    virtual QString shownText() const = 0;
    void place(const Placement& where) const override;
};

// A label: fixed text.
class Label final : public TextControl {
public:
    explicit Label(QString name, QString caption = {});
    QString Caption;
    QString shownText() const override { return Caption; }
};

// A field: a value, bound to a column of the report's data by DataField or
// set by the report's code, printed in its OutputFormat; or a summary of a
// column over the rows of the run or of the page.
class Field final : public TextControl {
public:
    explicit Field(QString name);

    QString DataField;
    QString OutputFormat;
    int SummaryType = summary_type::None;
    int SummaryFunc = summary_func::Sum;

    const QVariant& value() const { return value_; }
    // A new value; the text becomes the value in the output format.
    void setValue(const QVariant& value);
    const QString& text() const { return text_; }
    void setText(const QString& text) { text_ = text; }
    QString shownText() const override { return text_; }

private:
    QVariant value_;
    QString text_;
};

// A straight line between two points of its section.
class LineControl final : public ReportControl {
public:
    explicit LineControl(QString name);
    double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0; // twips from the section's top-left corner
    double LineWeight = 1;                 // in screen pixels of 15 twips; 0 the thinnest line
    unsigned LineColor = 0;                // 0x00BBGGRR
    void place(const Placement& where) const override;
};

// An image control: a picture (a bitmap or a metafile) in a box.
class ImageControl final : public ReportControl {
public:
    explicit ImageControl(QString name);

    int SizeMode = size_mode::Clip;
    int PictureAlignment = picture_align::TopLeft;

    const std::shared_ptr<const metafile::Picture>& picture() const { return picture_; }
    // A picture; null or an empty picture leaves the control empty.
    void setPicture(std::shared_ptr<const metafile::Picture> picture) { picture_ = std::move(picture); }

    // Where the picture lies on the paper for a section at `origin`. In zoom
    // mode the picture is fitted into the part of the control's box that lies
    // within the printable area, so that all of it prints.
    QRectF pictureBox(const QPointF& origin, const QRectF& printable) const;
    void place(const Placement& where) const override;

private:
    std::shared_ptr<const metafile::Picture> picture_;
};

} // namespace tessaly::reports
