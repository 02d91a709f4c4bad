#pragma once

#include "metafile/AldusHeader.h"

#include <QImage>
#include <QPoint>
#include <QString>
#include <cstdint>
#include <optional>

namespace tessaly {

class UiPort;
class Waiter;
class SettingsStore;

// What PictureToEMF needs of a picture control: its painted bitmap, its
// position, the size of its Picture in 0.01 mm and its scale mode.
struct PictureControlState {
    QImage image; // the painted content; its size is ScaleWidth by ScaleHeight in pixels
    int Left = 0; // the control's position in its container
    int Top = 0;
    int pictureWidthHiMetric = 0;  // Width of the control's Picture
    int pictureHeightHiMetric = 0; // Height of the control's Picture
    int ScaleMode = 1;             // noted, set to 3 (pixels) for the copy, restored after
};

// The output module's metafile routines: the placeable .wmf made from an
// enhanced metafile, and a painted picture written as an enhanced metafile.
class PrintMod {
public:
    PrintMod(UiPort& ui, Waiter& waiter, SettingsStore& userSettings);

    // Makes the placeable .wmf `target` from the enhanced metafile `source`.
    void ConvertEMFtoWMF(const QString& source, const QString& target);
    // Fills AldusHeader from the copied EMF header: -1 when filled, 0 when not.
    int16_t SetAldusData();
    // Sets the key and the checksum of a header in place.
    static void ComputeAldusChecksum(AldusFileHeader& header);
    // Writes the control's bitmap into an enhanced metafile; true when the
    // file was closed (written).
    bool PictureToEMF(PictureControlState& control, const QString& path, int32_t mapMode,
                      QString description);

    // The module-level header record, reused by every conversion.
    AldusFileHeader AldusHeader;
    // The module-level copy of the source's EMF header.
    EnhMetaHeaderCopy EnhMetaHeader;

private:
    UiPort& ui_;
    Waiter& waiter_;
    SettingsStore& userSettings_;
    int lastSystemError_ = 0; // errno of the last failed file call, as the trap shows it
};

} // namespace tessaly
