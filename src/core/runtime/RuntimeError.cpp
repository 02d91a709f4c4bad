#include "RuntimeError.h"

namespace tessaly {

RuntimeError::RuntimeError(int number, QString description, QString source)
    : number_(number), description_(description.isEmpty() ? standardDescription(number) : std::move(description)),
      source_(source.isEmpty() ? QStringLiteral("Tessaly") : std::move(source)) {
    what_ = QStringLiteral("Run-time error %1: %2").arg(number_).arg(description_).toStdString();
}

QString RuntimeError::standardDescription(int number) {
    switch (number) {
    case err::InvalidProcedureCall:
        return QStringLiteral("Invalid procedure call or argument");
    case err::Overflow:
        return QStringLiteral("Overflow");
    case err::TypeMismatch:
        return QStringLiteral("Type mismatch");
    case err::BadFileName:
        return QStringLiteral("Bad file name or number");
    case err::FileNotFound:
        return QStringLiteral("File not found");
    case err::FileAlreadyExists:
        return QStringLiteral("File already exists");
    case err::PermissionDenied:
        return QStringLiteral("Permission denied");
    case err::PathFileAccess:
        return QStringLiteral("Path/File access error");
    case err::PathNotFound:
        return QStringLiteral("Path not found");
    case err::ObjectRequired:
        return QStringLiteral("Object required");
    case err::CannotCreateObject:
        return QStringLiteral("ActiveX component can't create object");
    case err::NotSupported:
        return QStringLiteral("Object doesn't support this property or method");
    case err::InvalidPicture:
        return QStringLiteral("Invalid picture");
    case err::PdfInUse:
        return QStringLiteral("The file is in use and cannot be overwritten");
    case err::CanvasFile:
        return QStringLiteral("The drawing file is missing or cannot be read");
    case err::DialogCancelled:
        return QStringLiteral("Cancel was selected.");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}

void raiseError(int number, const QString& description, const QString& source) {
    throw RuntimeError(number, description, source);
}

} // namespace tessaly
