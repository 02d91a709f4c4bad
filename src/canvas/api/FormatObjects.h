#pragma once

#include "ShapeObjects.h"

namespace tessaly::canvas {

// FillFormat: Type, Colour, LoadTexture (plus BackColour, Hatch, Shade).
class FillFormat : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("FillFormat"); }
    TESSALY_AUTO_MEMBERS(FillFormat)
};

// LineFormat: Style, Colour, Weight (plus BeginArrow, EndArrow).
class LineFormat : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("LineFormat"); }
    TESSALY_AUTO_MEMBERS(LineFormat)
};

// TextFrame: Value (default member), Font, Edit.
class TextFrame : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("TextFrame"); }
    TESSALY_AUTO_MEMBERS(TextFrame)
    std::optional<QVariant> printValue() override;
};

// TextFont: Name (default member), Size, Bold.
class TextFont : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("TextFont"); }
    TESSALY_AUTO_MEMBERS(TextFont)
    std::optional<QVariant> printValue() override;
};

// EffectFormat: Lens, LensActive.
class EffectFormat : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("EffectFormat"); }
    TESSALY_AUTO_MEMBERS(EffectFormat)
};

// LensFormat: Type (codes of the lens table), Percent (-100..100), StartColour, EndColour.
class LensFormat : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("LensFormat"); }
    TESSALY_AUTO_MEMBERS(LensFormat)
};

// ShapeLocks: LockA, LockB; both true make the shape immovable under the mouse.
class ShapeLocks : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("ShapeLocks"); }
    TESSALY_AUTO_MEMBERS(ShapeLocks)
};

} // namespace tessaly::canvas
