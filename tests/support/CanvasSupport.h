#pragma once

#include "canvas/api/FormatObjects.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "canvas/api/ShapeObjects.h"
#include "canvas/api/ViewObjects.h"
#include "core/runtime/RuntimeError.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "Printing.h"

namespace tessaly::canvas::test {

// Records every event of a canvas as a line of text, in order.
class EventLog : public CanvasEvents {
public:
    QStringList lines;
    std::function<void(const QString&, int)> onShapeAdded;
    std::function<void(int)> onShapeFinished;
    bool handleFileErrors = false;

    void MouseDown(int& b, int& s, float& x, float& y) override { lines << fmt("MouseDown", b, s, x, y); }
    void MouseMove(int& b, int& s, float& x, float& y) override { lines << fmt("MouseMove", b, s, x, y); }
    void MouseUp(int& b, int& s, float& x, float& y) override { lines << fmt("MouseUp", b, s, x, y); }
    void KeyDown(int& k, int& s) override { lines << QStringLiteral("KeyDown %1 %2").arg(k).arg(s); }
    void ShapeAdded(int a, int id) override {
        lines << QStringLiteral("ShapeAdded %1 %2").arg(a).arg(id);
        if (onShapeAdded)
            onShapeAdded(QStringLiteral("added"), id);
    }
    void ShapeFinished(int a, int id) override {
        lines << QStringLiteral("ShapeFinished %1 %2").arg(a).arg(id);
        if (onShapeFinished)
            onShapeFinished(id);
    }
    void SelectionChanged(int id) override { lines << QStringLiteral("SelectionChanged %1").arg(id); }
    void SelectionCleared() override { lines << QStringLiteral("SelectionCleared"); }
    void ShapeChanged() override { lines << QStringLiteral("ShapeChanged"); }
    void ShapeMoved(int a, int b) override { lines << QStringLiteral("ShapeMoved %1 %2").arg(a).arg(b); }
    void DrawingCancelled() override { lines << QStringLiteral("DrawingCancelled"); }
    void FileReadError(const QString& text, int code, bool& handled) override {
        lines << QStringLiteral("FileReadError %1 %2").arg(code).arg(text);
        handled = handleFileErrors;
    }
    void FileWriteError(const QString& text, int code, bool& handled) override {
        lines << QStringLiteral("FileWriteError %1 %2").arg(code).arg(text);
        handled = handleFileErrors;
    }
    // The lines that start with `prefix`.
    QStringList only(const QString& prefix) const { return lines.filter(QRegularExpression("^" + prefix)); }

private:
    static QString fmt(const char* name, int b, int s, float x, float y) {
        return QStringLiteral("%1 %2 %3 %4 %5").arg(QLatin1String(name)).arg(b).arg(s).arg(x).arg(y);
    }
};

// Late-bound access, as the script driver walks names.
inline QVariant get(const AutoPtr& o, const QString& name, const QVariantList& index = {}) {
    return o->get(name, index);
}
inline AutoPtr obj(const AutoPtr& o, const QString& name, const QVariantList& index = {}) {
    return toObject(o->get(name, index));
}
inline QVariant call(const AutoPtr& o, const QString& name, QVariantList args = {}) {
    return o->call(name, args);
}

// The error number that `f` raises, or 0.
template <class F> int errorOf(F&& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

// A canvas of 800 x 600 pixels at 100% zoom, page from (0,0) at the window's top-left.
inline std::shared_ptr<POLARDraw> makeCanvas() {
    auto c = POLARDraw::create();
    c->setViewportSize(QSize(800, 600));
    c->setScroll(QPointF(0, 0));
    return c;
}

} // namespace tessaly::canvas::test
