// What users wait for in the output windows: packing the chosen plans'
// files into the mail's archive, checking the spelling of a mail's text, and
// flooding an area of a large plan picture.
#include "core/port/ScriptedUiPort.h"
#include "metafile/EmfPaintDevice.h"
#include "metafile/WmfWriter.h"
#include "output/colour/FloodFill.h"
#include "output/mail/Packer.h"
#include "output/spell/SpellChecker.h"
#include "output/spell/VSSpell.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

using namespace tessaly;

// --- packing --------------------------------------------------------------

// The plans of a mail, each with its .emf, .wmf and .pdf.
constexpr int PlanCount = 50;
// Lines of each plan's drawing: a plan's three files come to about 1 MB.
constexpr int LinesPerPlan = 9500;
constexpr double A4LandscapeWidthMm = 297;
constexpr double A4LandscapeHeightMm = 210;

// One plan's drawing, played onto any painter: walls as a grid of lines
// that differ from plan to plan.
void paintPlan(QPainter& painter, int plan, QSizeF size) {
    painter.setPen(QPen(Qt::black, 1));
    for (int i = 0; i < LinesPerPlan; ++i) {
        const double x = std::fmod(i * 37.0 + plan * 11.0, size.width() - 60);
        const double y = std::fmod(i * 91.0 + plan * 7.0, size.height() - 40);
        painter.drawLine(QPointF(x, y), QPointF(x + 20 + i % 40, y + (i % 3) * 10));
    }
}

// A temporary folder as the e-mail window leaves it before the packer
// runs: 150 files of 50 plans, about 50 MB.
class PlanFiles {
public:
    PlanFiles() {
        folder_ = dir_.path() + QStringLiteral("/TempFileStore");
        QDir().mkpath(folder_);
        for (int plan = 0; plan < PlanCount; ++plan) {
            const QString base = folder_ + QStringLiteral("/Plan %1").arg(plan + 1);
            metafile::EmfPaintDevice emf(QSizeF(A4LandscapeWidthMm, A4LandscapeHeightMm));
            {
                QPainter painter(&emf);
                paintPlan(painter, plan, QSizeF(1122, 793));
            }
            const QByteArray emfBytes = emf.toBytes();
            write(base + QStringLiteral(".emf"), emfBytes);
            write(base + QStringLiteral(".wmf"), metafile::convertEmfToWmf(emfBytes, true));
            QPdfWriter pdf(base + QStringLiteral(".pdf"));
            pdf.setPageSize(QPageSize(QPageSize::A4));
            pdf.setPageOrientation(QPageLayout::Landscape);
            QPainter painter(&pdf);
            paintPlan(painter, plan, QSizeF(pdf.width(), pdf.height()));
        }
        for (const QFileInfo& f : QDir(folder_).entryInfoList(QDir::Files))
            bytes_ += f.size();
    }
    QString archive() const { return folder_ + QStringLiteral("\\Drawings.zip"); }
    QString pattern() const { return folder_ + QStringLiteral("\\*.*"); }
    qint64 bytes() const { return bytes_; }

private:
    static void write(const QString& path, const QByteArray& data) {
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(data);
    }
    QTemporaryDir dir_;
    QString folder_;
    qint64 bytes_ = 0;
};

void BM_PackFiftyPlans(benchmark::State& state) {
    static PlanFiles files;
    QStringList entries;
    for (auto _ : state) {
        entries = mail::packFiles(files.archive(), files.pattern());
        benchmark::DoNotOptimize(entries);
    }
    state.counters["files"] = static_cast<double>(entries.size());
    state.counters["MB"] = static_cast<double>(files.bytes()) / 1e6;
    state.SetBytesProcessed(state.iterations() * files.bytes());
}
BENCHMARK(BM_PackFiftyPlans)->Unit(benchmark::kMillisecond)->UseRealTime();

// --- spelling ---------------------------------------------------------------

// The words of a mail's text, and the words among them that the dictionary
// does not know.
constexpr int WordCount = 2000;
constexpr int SlipsInTheLetter = 3;

// A letter to a client: ordinary words, with a name and two slips that the
// dialog offers.
QString letter() {
    const QStringList words =
        QStringLiteral(
            "Dear client please find attached the drawings of the ground floor and the first floor of your "
            "house "
            "with the kitchen extension the colour of the walls the centre of the garden and the new windows "
            "we would be grateful for your comments before the builders start work on site next month "
            "Tessaly plese recieve")
            .split(QLatin1Char(' '));
    QStringList text;
    for (int i = 0; i < WordCount; ++i)
        text << words[i % words.size()];
    return text.join(QLatin1Char(' '));
}

void BM_SpellCheckTwoThousandWords(benchmark::State& state) {
    spell::SpellChecker& checker = spell::SpellChecker::shared();
    const QString text = letter();
    // The dialog ignores each word it offers at once, as a user who reads
    // and passes over a name.
    ScriptedUiPort port;
    int offered = 0;
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < SlipsInTheLetter; ++i)
            port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("ignore")));
        state.ResumeTiming();
        spell::VSSpell spell(port, &checker);
        spell.Text = text;
        spell.CheckSpelling();
        offered = spell.ErrorCount;
        benchmark::DoNotOptimize(spell.ErrorCount);
    }
    state.counters["words"] = static_cast<double>(spell::SpellChecker::words(text).size());
    state.counters["offered"] = offered;
}
BENCHMARK(BM_SpellCheckTwoThousandWords)->Unit(benchmark::kMillisecond);

// --- flood fill -------------------------------------------------------------

constexpr int PictureWidth = 5000;
constexpr int PictureHeight = 3500;

// A plan picture: rooms outlined on white, so that the background around
// them is one large area with many holes.
QImage planPicture() {
    QImage image(PictureWidth, PictureHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 1));
    for (int y = 200; y + 300 < PictureHeight; y += 400)
        for (int x = 200; x + 400 < PictureWidth; x += 500)
            painter.drawRect(x, y, 380 - (x / 500) % 7 * 10, 300 - (y / 400) % 5 * 10);
    return image;
}

void BM_FloodFillPlanPicture(benchmark::State& state) {
    const QImage plan = planPicture();
    colour::FloodStats stats;
    for (auto _ : state) {
        state.PauseTiming();
        QImage image = plan.copy();
        state.ResumeTiming();
        stats = colour::floodFill(image, 10, 10, qRgb(255, 255, 255), qRgb(255, 204, 153),
                                  colour::FloodMode::Surface);
        benchmark::DoNotOptimize(image.bits());
    }
    state.counters["pixels"] = static_cast<double>(stats.filled);
    state.counters["peakSegments"] = static_cast<double>(stats.peakSegments);
}
BENCHMARK(BM_FloodFillPlanPicture)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
