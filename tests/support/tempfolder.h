// A temporary folder for one test, with small helpers to write and read files in it.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace brindar::test {

class TempFolder {
public:
    TempFolder();
    QString path() const { return dir_.path(); }
    QString file(const QString& name) const { return dir_.filePath(name); }
    // Writes bytes to a file below the folder (creating sub-folders); returns its path.
    QString write(const QString& name, const QByteArray& bytes) const;
    QByteArray read(const QString& name) const;

private:
    QTemporaryDir dir_;
};

// The whole content of a file; empty when it cannot be read.
QByteArray ReadFile(const QString& path);

// Writes a file at a path given as the system's bytes (a name that is not UTF-8).
bool WriteFileAtBytes(const QByteArray& nativePath, const QByteArray& bytes);

// Where the shared corpus and the sources are.
QString CorpusFile(const QString& relative);
QString SourceFile(const QString& relative);

}  // namespace brindar::test

#include <ostream>

// Readable failure messages for Qt strings.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QByteArray& bytes, std::ostream* out) { *out << '"' << bytes.toStdString() << '"'; }
