#pragma once

#include "reports/ActiveReport.h"

namespace tessaly {
class ApplicationBase;
}

namespace tessaly::output {

// The names of the two page layouts of the report exports.
inline const QString PortraitLayout = QStringLiteral("ExportOuputPortrate");
inline const QString LandscapeLayout = QStringLiteral("ExportOuputLandscape");

// The scratch metafile that the layouts load at their start, in the application folder.
inline const QString PrintTempName = QStringLiteral("\\PrintTemp.emf");

// A new instance of one of the two layouts: the report title, zero-height page
// header and footer, the Detail section with the one control ImgEMF, the
// paper, margins and print width of the layout. Its start loads the
// application folder's PrintTemp.emf into ImgEMF; a missing or damaged file
// leaves the picture empty. Error 5 for another name.
reports::ReportPtr makeExportLayout(ApplicationBase& app, const QString& name);

} // namespace tessaly::output
