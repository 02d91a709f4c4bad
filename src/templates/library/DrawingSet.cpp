#include "templates/library/DrawingSet.h"

#include "canvas/api/POLARDraw.h"
#include "canvas/io/PdrFormat.h"
#include "core/runtime/RuntimeError.h"
#include "templates/library/BlankDrawings.h"
#include "templates/library/CatalogueParser.h"
#include "templates/library/LibraryDrawing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace tessaly::templates {

namespace {

// Where the catalogue's files are built into the program (data/symbols).
const QString CatalogueResources = QStringLiteral(":/symbols");

Catalogue readBuiltIn() {
    Catalogue all;
    const QDir dir(CatalogueResources);
    const QStringList files = dir.entryList({QStringLiteral("*.sym")}, QDir::Files, QDir::Name);
    if (files.isEmpty())
        raiseError(err::FileNotFound, QStringLiteral("The symbol catalogue is not built into this program"));
    for (const QString& name : files) {
        QFile f(dir.filePath(name));
        if (!f.open(QIODevice::ReadOnly))
            raiseError(err::FileNotFound, QStringLiteral("The symbol catalogue %1 cannot be read").arg(name));
        Catalogue part = parseCatalogue(QString::fromUtf8(f.readAll()), name);
        for (Library& l : part.libraries)
            all.libraries.push_back(std::move(l));
    }
    return all;
}

// Writes one drawing by a temporary file renamed over the target, so that no
// half-written file is ever in place. The files are made again by every
// install, so they are not forced to the disk one by one: that would make the
// install step, which every run of the test scripts starts with, many times
// slower.
void writeDrawing(const QString& path, const QByteArray& bytes) {
    const QString temporary = path + QStringLiteral(".new");
    QFile out(temporary);
    const bool ok = out.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                    out.write(bytes) == bytes.size() && out.flush();
    out.close();
    if (!ok ||
        std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) != 0) {
        QFile::remove(temporary);
        raiseError(err::PathFileAccess, QStringLiteral("The drawing %1 cannot be written").arg(path));
    }
}

} // namespace

const Catalogue& builtInCatalogue() {
    static const Catalogue catalogue = readBuiltIn();
    return catalogue;
}

std::vector<DrawingFile> drawingFiles(const Catalogue& catalogue) {
    std::vector<DrawingFile> out;
    for (const Library& lib : catalogue.libraries) {
        if (!lib.scaled) {
            out.push_back({lib.fileName(0), false, false, [&lib] { return buildLibraryDrawing(lib, 0); }});
            continue;
        }
        for (int scale : LibraryScales)
            out.push_back({lib.fileName(scale), false, false,
                           [&lib, scale] { return buildLibraryDrawing(lib, scale); }});
    }
    const QString noScale;
    out.push_back(
        {NewDrawingFile, false, true, [] { return buildBlankDrawing(blank_page::NewDrawingScale); }});
    out.push_back({TemplateBlankFile, false, true, [noScale] { return buildBlankDrawing(noScale); }});
    out.push_back({DefaultTemplateFile, false, true, [noScale] { return buildBlankDrawing(noScale); }});
    out.push_back({UserItemsFile, false, true, [noScale] { return buildBlankDrawing(noScale); }});
    out.push_back({PortraitTemplateFile, true, true, [] { return buildPageTemplate(false); }});
    out.push_back({LandscapeTemplateFile, true, true, [] { return buildPageTemplate(true); }});
    return out;
}

QStringList writeDrawingFiles(const Catalogue& catalogue, const QString& templateFolder,
                              const QString& appFolder) {
    QStringList written;
    for (const DrawingFile& file : drawingFiles(catalogue)) {
        const QString path = QDir(file.inAppFolder ? appFolder : templateFolder).filePath(file.name);
        if (file.userData && QFileInfo::exists(path))
            continue;
        const auto draw = file.build();
        writeDrawing(path, canvas::pdr::encode(draw->drawing().shapes(), draw->drawing().state()));
        written << path;
    }
    return written;
}

} // namespace tessaly::templates
