#pragma once

#include <QString>
#include <exception>
#include <string>

namespace tessaly {

// Error numbers that Tessaly's routines raise and trap by number.
namespace err {
constexpr int InvalidProcedureCall = 5; // invalid procedure call or argument
constexpr int Overflow = 6;             // a value too large for its integer type
constexpr int TypeMismatch = 13;        // a text that is not a number where one is needed
constexpr int BadFileName = 52;         // bad file name or number
constexpr int FileNotFound = 53;        // file not found
constexpr int FileAlreadyExists = 58;   // file already exists
constexpr int PermissionDenied = 70;    // permission denied
constexpr int PathFileAccess = 75;      // path/file access error
constexpr int PathNotFound = 76;        // path not found
constexpr int NoArrayElement = 340;      // a control array has no element of that index
constexpr int ObjectRequired = 424;     // an object variable that is Nothing was used
constexpr int CannotCreateObject = 429; // an object (mail program and the like) cannot be created
constexpr int NotSupported = 438;       // the object has no such property or method
constexpr int InvalidPicture = 481;     // the picture loader cannot read the file
constexpr int NoControl = 730;           // a form has no control of that name
constexpr int PdfInUse = 7001;          // the PDF target is held by another program
constexpr int CanvasFile = 30001;       // the canvas cannot read or find its drawing file
constexpr int DialogCancelled = 32755;  // a common dialog with CancelError was cancelled
} // namespace err

// A run-time error: the number, description and source that a trap sees.
class RuntimeError : public std::exception {
public:
    explicit RuntimeError(int number, QString description = {}, QString source = {});

    int number() const noexcept { return number_; }
    const QString& description() const noexcept { return description_; }
    const QString& source() const noexcept { return source_; }
    const char* what() const noexcept override { return what_.c_str(); }

    // The text the platform gives for a number when the raiser gives none.
    static QString standardDescription(int number);

private:
    int number_;
    QString description_;
    QString source_;
    std::string what_;
};

[[noreturn]] void raiseError(int number, const QString& description = {}, const QString& source = {});

} // namespace tessaly
