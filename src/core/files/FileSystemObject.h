#pragma once

#include "core/runtime/AutoObject.h"

namespace tessaly {

// The scripting file system object ("Scripting.FileSystemObject") as the
// logic reaches it late-bound: CopyFile (source, target, overwrite),
// DeleteFolder (path, force), CreateFolder, DeleteFile, FileExists and
// FolderExists, all on paths of the logic through the file facade. A target
// that ends with "\" names a folder: the copy keeps the source's name.
class FileSystemObject final : public AutoObject {
public:
    // The class name that CreateObject makes it by.
    static constexpr const char* ProgId = "Scripting.FileSystemObject";

    QString typeName() const override { return QStringLiteral("FileSystemObject"); }
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;
};

} // namespace tessaly
