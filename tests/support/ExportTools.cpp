#include "ExportTools.h"

#include "MetafileTools.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace tessaly::test {

namespace {
constexpr int MidGrey = 128;

QString output(const char* program, const QStringList& arguments, int* status = nullptr) {
    QByteArray text;
    const int code = runTool(QString::fromLatin1(program), arguments, &text);
    if (status)
        *status = code;
    return QString::fromUtf8(text);
}
} // namespace

QMap<QString, QString> pdfInfo(const QString& path) {
    int status = 0;
    const QString text = output(PDFINFO_PROGRAM, {path}, &status);
    QMap<QString, QString> fields;
    if (status != 0)
        return fields;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon > 0)
            fields.insert(line.left(colon).trimmed(), line.mid(colon + 1).trimmed());
    }
    return fields;
}

bool qpdfCheck(const QString& path, QString* report) {
    int status = 0;
    const QString text = output(QPDF_PROGRAM, {QStringLiteral("--check"), path}, &status);
    if (report)
        *report = text;
    return status == 0;
}

QString pdfText(const QString& path) {
    return output(PDFTOTEXT_PROGRAM, {path, QStringLiteral("-")});
}

int pdfImageCount(const QString& path) {
    int status = 0;
    const QString text = output(PDFIMAGES_PROGRAM, {QStringLiteral("-list"), path}, &status);
    if (status != 0)
        return -1;
    // Two heading lines, then one line per image.
    const QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return static_cast<int>(std::max<qsizetype>(0, lines.size() - 2));
}

QImage pdfPage(const QString& path, int dpi, int page) {
    QTemporaryDir dir;
    const QString base = dir.filePath(QStringLiteral("page"));
    int status = 0;
    output(PDFTOPPM_PROGRAM,
           {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-f"), QString::number(page),
            QStringLiteral("-l"), QString::number(page), QStringLiteral("-png"),
            QStringLiteral("-singlefile"), path, base},
           &status);
    return status == 0 ? QImage(base + QStringLiteral(".png")) : QImage();
}

QString tiffInfo(const QString& path) {
    int status = 0;
    const QString text = output(TIFFINFO_PROGRAM, {path}, &status);
    return status == 0 ? text : QString();
}

int tiffPageCount(const QString& path) {
    return static_cast<int>(
        tiffInfo(path).count(QRegularExpression(QStringLiteral("TIFF Directory at offset"))));
}

QImage tiffPage(const QString& path, int page) {
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("page.png"));
    int status = 0;
    output(CONVERT_PROGRAM, {QStringLiteral("%1[%2]").arg(path).arg(page), png}, &status);
    return status == 0 ? QImage(png) : QImage();
}

QImage svgImage(const QString& path) {
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("svg.png"));
    int status = 0;
    output(RSVG_CONVERT_PROGRAM, {QStringLiteral("-o"), png, path}, &status);
    return status == 0 ? QImage(png) : QImage();
}

QString identifySize(const QString& path) {
    return output(IDENTIFY_PROGRAM, {QStringLiteral("-format"), QStringLiteral("%wx%h"), path}).trimmed();
}

QRect darkBounds(const QImage& image) {
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    int left = grey.width(), top = grey.height(), right = -1, bottom = -1;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar* row = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            if (row[x] < MidGrey) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

} // namespace tessaly::test
