#include "MetafileTools.h"

#include "metafile/EmfPaintDevice.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPainterPath>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>

namespace tessaly::test {

uint32_t u32(const QByteArray& b, qsizetype at) {
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData() + at);
    return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}
int32_t i32(const QByteArray& b, qsizetype at) {
    return static_cast<int32_t>(u32(b, at));
}
uint16_t u16(const QByteArray& b, qsizetype at) {
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData() + at);
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}
int16_t i16(const QByteArray& b, qsizetype at) {
    return static_cast<int16_t>(u16(b, at));
}

std::vector<EmfRecord> emfRecords(const QByteArray& emf) {
    std::vector<EmfRecord> records;
    qsizetype at = 0;
    while (at + 8 <= emf.size()) {
        const EmfRecord r{u32(emf, at), u32(emf, at + 4), at};
        records.push_back(r);
        if (r.size < 8 || r.type == 14)
            break;
        at += r.size;
    }
    return records;
}

std::vector<WmfRecord> wmfRecords(const QByteArray& wmf, qsizetype start) {
    std::vector<WmfRecord> records;
    qsizetype at = start + 18;
    while (at + 6 <= wmf.size()) {
        const WmfRecord r{u16(wmf, at + 4), u32(wmf, at), at};
        records.push_back(r);
        if (r.words < 3 || r.function == 0)
            break;
        at += 2 * static_cast<qsizetype>(r.words);
    }
    return records;
}

QByteArray recordEmf(QSizeF frameMm, const std::function<void(QPainter&)>& paint, int dpi) {
    metafile::EmfPaintDevice device(frameMm, dpi);
    QPainter painter(&device);
    paint(painter);
    painter.end();
    const QByteArray emf = device.toBytes();
    // Every EMF the tests write must be readable by libemf2svg.
    static int counter = 0;
    const QString name = QStringLiteral("recorded-%1").arg(++counter);
    EXPECT_TRUE(emfToSvg(emf, name).contains("<svg")) << "emf2svg-conv failed on " << name.toStdString();
    return emf;
}

namespace {

void paintShapes(QPainter& painter, bool withEllipse) {
    painter.setPen(QPen(QColor(200, 0, 0), 4, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(QColor(255, 220, 0));
    painter.drawRect(20, 20, 180, 100);
    if (withEllipse) {
        painter.setPen(QPen(QColor(0, 0, 160), 2));
        painter.setBrush(QColor(120, 200, 255));
        painter.drawEllipse(QRectF(240, 30, 140, 90));
    }
    painter.setPen(QPen(Qt::black, 6, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawLine(20, 200, 380, 200);
    painter.setPen(QPen(QColor(0, 120, 0), 3, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(QColor(150, 255, 150));
    const QPointF triangle[3] = {{60, 260}, {180, 380}, {30, 380}};
    painter.drawPolygon(triangle, 3);
    QPainterPath curve;
    curve.moveTo(220, 260);
    curve.cubicTo(260, 220, 340, 420, 380, 300);
    curve.lineTo(380, 380);
    curve.lineTo(220, 380);
    curve.closeSubpath();
    painter.setPen(QPen(QColor(120, 0, 120), 2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(QColor(255, 180, 255));
    painter.drawPath(curve);
}

} // namespace

void paintShapes(QPainter& painter) {
    paintShapes(painter, true);
}

void paintShapesWithoutEllipse(QPainter& painter) {
    paintShapes(painter, false);
}

QString scratchDir() {
    static std::unique_ptr<QTemporaryDir> dir = [] {
        auto d = std::make_unique<QTemporaryDir>();
        d->setAutoRemove(std::getenv("TESSALY_KEEP_SCRATCH") == nullptr);
        return d;
    }();
    return dir->path();
}

QString writeScratch(const QString& name, const QByteArray& bytes) {
    const QString path = scratchDir() + QLatin1Char('/') + name;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return path;
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addToCorpus(const QString& kind, const QString& name, const QByteArray& bytes) {
    const QString dir = QStringLiteral(TESSALY_METAFILE_CORPUS) + QLatin1Char('/') + kind;
    QDir().mkpath(dir);
    QFile file(dir + QLatin1Char('/') + name);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

int runTool(const QString& program, const QStringList& arguments, QByteArray* output) {
    if (program.isEmpty())
        return -1;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(30000))
        return -1;
    if (output)
        *output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QByteArray emfToSvg(const QByteArray& emf, const QString& name) {
    const QString in = writeScratch(name + QStringLiteral(".emf"), emf);
    const QString out = scratchDir() + QLatin1Char('/') + name + QStringLiteral(".emf.svg");
    if (runTool(QStringLiteral(EMF2SVG_PROGRAM), {QStringLiteral("-i"), in, QStringLiteral("-o"), out}) != 0)
        return {};
    return readFile(out);
}

QStringList libwmfFontArguments() {
    // libwmf looks for the standard PostScript fonts; they are mapped to the
    // metric-compatible Liberation fonts of the system.
    static const QString map = [] {
        const QString dir = QStringLiteral(LIBERATION_FONT_DIR);
        const QList<QPair<QString, QString>> fonts = {{"Times-Roman", "LiberationSerif-Regular"},
                                                      {"Times-Italic", "LiberationSerif-Italic"},
                                                      {"Times-Bold", "LiberationSerif-Bold"},
                                                      {"Times-BoldItalic", "LiberationSerif-BoldItalic"},
                                                      {"Helvetica", "LiberationSans-Regular"},
                                                      {"Helvetica-Oblique", "LiberationSans-Italic"},
                                                      {"Helvetica-Bold", "LiberationSans-Bold"},
                                                      {"Helvetica-BoldOblique", "LiberationSans-BoldItalic"},
                                                      {"Courier", "LiberationMono-Regular"},
                                                      {"Courier-Oblique", "LiberationMono-Italic"},
                                                      {"Courier-Bold", "LiberationMono-Bold"},
                                                      {"Courier-BoldOblique", "LiberationMono-BoldItalic"},
                                                      {"Symbol", "LiberationSans-Regular"},
                                                      {"ZapfDingbats", "LiberationSans-Regular"}};
        QByteArray text;
        for (const auto& [name, file] : fonts)
            text += QStringLiteral("/%1 (%2/%3.ttf) ;\n").arg(name, dir, file).toUtf8();
        return writeScratch(QStringLiteral("libwmf-fontmap"), text);
    }();
    return {QStringLiteral("--wmf-gs-fontmap=") + map,
            QStringLiteral("--wmf-fontdir=") + QStringLiteral(LIBERATION_FONT_DIR)};
}

QByteArray wmfToSvg(const QByteArray& wmf, const QString& name) {
    const QString in = writeScratch(name + QStringLiteral(".wmf"), wmf);
    const QString out = scratchDir() + QLatin1Char('/') + name + QStringLiteral(".wmf.svg");
    if (runTool(QStringLiteral(WMF2SVG_PROGRAM),
                libwmfFontArguments() + QStringList{QStringLiteral("-o"), out, in}) != 0)
        return {};
    return readFile(out);
}

double mismatchShare(const QImage& a, const QImage& b, int channelTolerance) {
    return mismatchShareNear(a, b, channelTolerance, 0);
}

double mismatchShareNear(const QImage& a, const QImage& b, int channelTolerance, int radius) {
    if (a.size() != b.size() || a.isNull())
        return 1.0;
    const QImage x = a.convertToFormat(QImage::Format_RGB32);
    const QImage y = b.convertToFormat(QImage::Format_RGB32);
    auto close = [&](QRgb p, QRgb q) {
        return std::abs(qRed(p) - qRed(q)) <= channelTolerance &&
               std::abs(qGreen(p) - qGreen(q)) <= channelTolerance &&
               std::abs(qBlue(p) - qBlue(q)) <= channelTolerance;
    };
    qint64 bad = 0;
    for (int row = 0; row < x.height(); ++row) {
        for (int col = 0; col < x.width(); ++col) {
            const QRgb p = x.pixel(col, row);
            bool matched = false;
            for (int dy = -radius; dy <= radius && !matched; ++dy)
                for (int dx = -radius; dx <= radius && !matched; ++dx) {
                    const int yy = row + dy;
                    const int xx = col + dx;
                    if (yy >= 0 && xx >= 0 && yy < y.height() && xx < y.width())
                        matched = close(p, y.pixel(xx, yy));
                }
            bad += matched ? 0 : 1;
        }
    }
    return double(bad) / (double(x.width()) * x.height());
}

} // namespace tessaly::test

namespace tessaly::test {

QImage wmfToPng(const QByteArray& wmf, const QString& name, const QSize& size) {
    const QString in = writeScratch(name + QStringLiteral(".wmf"), wmf);
    const QString out = scratchDir() + QLatin1Char('/') + name + QStringLiteral(".wmf.png");
    const QStringList sizeArguments = {QStringLiteral("--maxwidth=%1").arg(size.width()),
                                       QStringLiteral("--maxheight=%1").arg(size.height()),
                                       QStringLiteral("--maxsize")};
    if (runTool(QStringLiteral(WMF2GD_PROGRAM),
                libwmfFontArguments() + sizeArguments + QStringList{QStringLiteral("-o"), out, in}) != 0)
        return {};
    // Laid over white: the PNG's background is transparent.
    const QImage png(out);
    if (png.isNull())
        return {};
    QImage flat(png.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, png);
    painter.end();
    return flat;
}

} // namespace tessaly::test
