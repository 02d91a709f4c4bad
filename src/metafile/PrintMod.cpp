#include "PrintMod.h"

#include "core/files/FileSystem.h"
#include "core/port/UiPort.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "core/runtime/Waiter.h"
#include "core/settings/SettingsStore.h"
#include "metafile/EmfParser.h"
#include "metafile/EmfRecorder.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfWriter.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>

namespace tessaly {

namespace {

// The application's title: the caption of message boxes that give none.
const QString AppTitle = QStringLiteral("Tessaly");
// A line break in message texts.
const QString NewLine = QStringLiteral("\r\n");
// The placeable header's key.
constexpr uint32_t AldusKey = 0x9AC6CDD7;
// The waits of the conversion, in milliseconds: after the plain WMF is
// written, after it is read back, and after it is deleted.
constexpr int WaitAfterCopy = 500;
constexpr int WaitAfterRead = 300;
constexpr int WaitAfterDelete = 500;
// The two zero bytes that follow the old-style metafile in the output.
constexpr int TrailingZeroBytes = 2;
// Error 9, raised when a buffer of no bytes is dimensioned.
constexpr int SubscriptOutOfRange = 9;
// The scale mode of a picture control measured in pixels.
constexpr int PixelScaleMode = 3;

} // namespace

PrintMod::PrintMod(UiPort& ui, Waiter& waiter, SettingsStore& userSettings)
    : ui_(ui), waiter_(waiter), userSettings_(userSettings) {}

void PrintMod::ComputeAldusChecksum(AldusFileHeader& header) {
    header.Key = AldusKey;
    uint16_t sum = 0;
    sum ^= static_cast<uint16_t>(header.Reserved >> 16);
    sum ^= static_cast<uint16_t>(header.Reserved & 0xFFFF);
    sum ^= static_cast<uint16_t>(header.Key >> 16);
    sum ^= static_cast<uint16_t>(header.Key & 0xFFFF);
    sum ^= static_cast<uint16_t>(header.Inch);
    sum ^= static_cast<uint16_t>(header.Bottom);
    sum ^= static_cast<uint16_t>(header.Right);
    sum ^= static_cast<uint16_t>(header.Top);
    sum ^= static_cast<uint16_t>(header.Left);
    sum ^= header.Handle;
    header.Checksum = sum;
}

int16_t PrintMod::SetAldusData() {
    QString stage;
    QString fields;
    try {
        stage = QStringLiteral("Set Parimeters");
        AldusHeader.Key = AldusKey;
        AldusHeader.Handle = 0;
        AldusHeader.Inch = vb::toInt16(
            userSettings_.read(QStringLiteral("Data"), QStringLiteral("APM_Inch"), QStringLiteral("96")));
        AldusHeader.Top = 0;
        AldusHeader.Left = 0;
        const QRect& bounds = EnhMetaHeader.rclBounds;
        const long long top = bounds.top();
        const long long bottom = bounds.bottom();
        if (top < 0)
            AldusHeader.Bottom = vb::checkInt16(bottom + (-top) + 1);
        else
            AldusHeader.Bottom = vb::checkInt16(bottom - top + 1);
        const long long left = bounds.left();
        const long long right = bounds.right();
        if (left < 0)
            AldusHeader.Right = vb::checkInt16(right + (-left) + 1);
        else
            AldusHeader.Right = vb::checkInt16(right - left + 1);
        fields = QStringLiteral("Key: ") + QString::number(AldusHeader.Key) + NewLine +
                 QStringLiteral("Handle:") + QString::number(AldusHeader.Handle) + NewLine +
                 QStringLiteral("Reserved: ") + QString::number(AldusHeader.Reserved) + NewLine +
                 QStringLiteral("Checksum: ") + QString::number(AldusHeader.Checksum) + NewLine +
                 QStringLiteral("Inch: ") + QString::number(AldusHeader.Inch) + NewLine +
                 QStringLiteral("Top: ") + QString::number(AldusHeader.Top) + NewLine +
                 QStringLiteral("Left: ") + QString::number(AldusHeader.Left) + NewLine +
                 QStringLiteral("Bottom: ") + QString::number(AldusHeader.Bottom) + NewLine +
                 QStringLiteral("Right: ") + QString::number(AldusHeader.Right);
        stage = QStringLiteral("Calculate Checksum");
        AldusHeader.Reserved = 0;
        AldusHeader.Checksum = 0;
        ComputeAldusChecksum(AldusHeader);
        return vb::TrueValue;
    } catch (const RuntimeError& e) {
        ui_.msgBox(QStringLiteral("Error in SetAldusData Process @ ") + stage + e.description() +
                       QStringLiteral(" / ") + QString::number(e.number()) + NewLine +
                       QString::number(lastSystemError_) + NewLine + NewLine + fields,
                   mb::OkOnly, AppTitle);
        return vb::FalseValue;
    }
}

void PrintMod::ConvertEMFtoWMF(const QString& source, const QString& target) {
    try {
        // Step 1: open the source; a file that is missing or not a readable
        // enhanced metafile gives no handle.
        std::optional<QByteArray> emf;
        {
            QFile file(fs::toHost(source));
            if (file.open(QIODevice::ReadOnly)) {
                const QByteArray bytes = file.readAll();
                try {
                    metafile::readEmfHeader(bytes);
                    metafile::checkEmfRecords(bytes);
                    emf = bytes;
                } catch (const RuntimeError&) {
                    lastSystemError_ = 0;
                }
            } else {
                lastSystemError_ = errno;
            }
        }
        // Step 2: the header and the placeable header's fields.
        if (emf) {
            const metafile::EmfHeader header = metafile::readEmfHeader(*emf);
            EnhMetaHeader.rclBounds = header.bounds;
            EnhMetaHeader.rclFrame = header.frame;
            EnhMetaHeader.szlDevice = header.deviceSize;
            EnhMetaHeader.szlMillimeters = header.millimetres;
            if (SetAldusData() == vb::FalseValue)
                ui_.msgBox(QStringLiteral("WMF Not Created!"), mb::Critical,
                           QStringLiteral("Export To Metafile Failed..."));
        }
        // Steps 3 and 4: the size of the old-style data, then the data, in
        // MM_ANISOTROPIC (the converter's own mapping). Without a handle there is nothing, and a buffer of
        // no bytes cannot be dimensioned.
        const QByteArray plain = emf ? metafile::convertEmfToWmf(*emf, true) : QByteArray();
        if (plain.isEmpty())
            raiseError(SubscriptOutOfRange, QStringLiteral("Subscript out of range"),
                       QStringLiteral("ConvertEMFtoWMF"));
        // Step 5: the metafile written to the target as it is.
        fs::writeAtomically(target, plain);
        // Step 6.
        waiter_.sleep(WaitAfterCopy);
        // Step 7: read it back into a buffer two bytes longer; those stay zero.
        QByteArray buffer = fs::readAll(target);
        buffer.append(TrailingZeroBytes, '\0');
        // Step 8.
        waiter_.sleep(WaitAfterRead);
        // Step 9.
        if (fs::fileExists(target))
            fs::kill(target);
        // Step 10.
        waiter_.sleep(WaitAfterDelete);
        // Step 11: the placeable header first, then the buffer.
        fs::writeAtomically(target, AldusHeader.toBytes() + buffer);
    } catch (const RuntimeError& e) {
        ui_.msgBox(QStringLiteral("Error in ConvertEMFtoWMF Process- ") + e.description() +
                       QStringLiteral(" / ") + QString::number(e.number()) + NewLine +
                       QString::number(lastSystemError_),
                   mb::OkOnly, AppTitle);
    }
}

bool PrintMod::PictureToEMF(PictureControlState& control, const QString& path, int32_t mapMode,
                            QString description) {
    // Step 1: an enhanced metafile's description ends with two NULs; the
    // writer adds the second.
    description.append(QChar(0));
    // Step 3: the frame from the control's position and its picture's size.
    const QRect frame(QPoint(control.Left, control.Top),
                      QPoint(control.pictureWidthHiMetric, control.pictureHeightHiMetric));
    // Step 4.
    const int scaleMode = control.ScaleMode;
    control.ScaleMode = PixelScaleMode;
    // Step 5: the metafile on a screen-like reference device.
    constexpr int ScreenDpi = 96;
    const QSize pixels = control.image.size();
    metafile::EmfRecorder recorder(
        QSizeF(pixels.width() * 25.4 / ScreenDpi, pixels.height() * 25.4 / ScreenDpi), ScreenDpi,
        description);
    recorder.setFrameHiMetric(frame);
    // Step 6.
    recorder.simpleRecord(metafile::emr::SetMapMode, {static_cast<uint32_t>(mapMode)});
    // Steps 7 and 8: the control's bitmap copied at 0,0 in ScaleWidth by ScaleHeight.
    if (!control.image.isNull()) {
        const QRect area(QPoint(0, 0), pixels);
        recorder.stretchDiBits(control.image, area, area);
    }
    // Step 10: close; the file stays on disk.
    bool closed = true;
    try {
        fs::writeAtomically(path, recorder.finish());
    } catch (const RuntimeError&) {
        closed = false;
    }
    // Step 11.
    control.ScaleMode = scaleMode;
    return closed;
}

} // namespace tessaly
