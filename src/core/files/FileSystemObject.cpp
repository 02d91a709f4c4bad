#include "FileSystemObject.h"

#include "FileSystem.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly {

namespace {

using member::is;

// An optional Boolean argument, with its default when left out.
bool flag(const QVariantList& args, int i, bool byDefault) {
    return args.size() > i && args.value(i).isValid() ? vb::toBool(args.value(i)) : byDefault;
}

QString text(const QVariantList& args, int i) {
    if (args.size() <= i)
        raiseError(err::InvalidProcedureCall, QStringLiteral("Argument not optional"));
    return vb::toText(args.value(i));
}

} // namespace

QVariant FileSystemObject::call(const QString& name, QVariantList& args) {
    if (is(name, "CopyFile")) {
        fs::copyFile(text(args, 0), text(args, 1), flag(args, 2, true));
        return {};
    }
    if (is(name, "DeleteFolder")) {
        // Force only matters for read-only files, which the facade removes alike.
        (void)flag(args, 1, false);
        fs::deleteFolder(text(args, 0));
        return {};
    }
    if (is(name, "CreateFolder")) {
        const QString path = text(args, 0);
        if (fs::folderExists(path))
            raiseError(err::FileAlreadyExists, QStringLiteral("File already exists"));
        fs::mkDir(path);
        return {};
    }
    if (is(name, "DeleteFile")) {
        fs::kill(text(args, 0));
        return {};
    }
    if (is(name, "FileExists"))
        return fs::fileExists(text(args, 0)) && !fs::folderExists(text(args, 0));
    if (is(name, "FolderExists"))
        return fs::folderExists(text(args, 0));
    return AutoObject::call(name, args);
}

QStringList FileSystemObject::memberNames() const {
    return {QStringLiteral("CopyFile"),   QStringLiteral("DeleteFolder"), QStringLiteral("CreateFolder"),
            QStringLiteral("DeleteFile"), QStringLiteral("FileExists"),   QStringLiteral("FolderExists")};
}

} // namespace tessaly
