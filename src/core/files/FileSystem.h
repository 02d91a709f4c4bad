#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The one place where paths of the logic meet the host's file system.
//
// Tessaly's logic builds paths with "\" as the original platform did, so that
// titles and stored names show what they always showed. Here those paths are
// mapped to the host: "\" becomes "/", and each part of the path is matched
// against the folder's entries without regard to case (the logic relies on
// ".PDF" finding ".pdf"). No other code opens a path from the logic directly.
namespace tessaly::fs {

// The host path for a path of the logic. Existing parts are matched without
// regard to case; parts that do not exist are kept as written.
QString toHost(const QString& logicPath);

// True when the pattern (which may hold * and ? in its last part) matches at
// least one file; a folder is no match, as the platform's Dir without
// attributes gave none. An empty or malformed path counts as not found.
bool fileExists(const QString& pattern);
bool folderExists(const QString& logicPath);

// Deletes a file; error 53 when it is not there, 75 when it cannot be removed.
void kill(const QString& logicPath);
// Makes one folder; error 75 when it exists or cannot be made, 76 when the parent is missing.
void mkDir(const QString& logicPath);
// Copies a file, replacing the target when `overwrite`; error 53 or 76 as the platform gave.
void copyFile(const QString& source, const QString& target, bool overwrite);
// Removes a folder and what it holds; error 76 when it is not there.
void deleteFolder(const QString& logicPath);

// Reads a whole file; error 53 when missing.
QByteArray readAll(const QString& logicPath);
// Writes a whole file by a temporary file renamed over the target, so that a
// crash or a full disk never leaves a half-written file. Error 75 on failure.
void writeAtomically(const QString& logicPath, const QByteArray& data);
// Appends to a text file, creating it when missing.
void appendText(const QString& logicPath, const QString& text);

} // namespace tessaly::fs
