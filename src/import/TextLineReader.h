#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// The lines of an import text file, streamed: never loaded whole, so files of
// any size and lines of megabytes read in steady memory. A file that is valid
// UTF-8 is read as UTF-8, any other as Windows-1252 (the older program's
// code page). Carriage returns are dropped, and empty lines are skipped and
// not counted.
class TextLineReader
{
public:
    // Opens the file and walks it once to count its lines and tell its
    // encoding; false, with errorText(), when it cannot be read.
    bool open(const QString& path);
    // The number of non-empty lines.
    qint64 lineCount() const { return m_lineCount; }
    bool isUtf8() const { return m_utf8; }
    // The next non-empty line, or false at the end of the file.
    bool next(QString& line);
    const QString& errorText() const { return m_error; }

    // Windows-1252 bytes as text.
    static QString FromWindows1252(const QByteArray& bytes);

private:
    bool nextRaw(QByteArray& line);
    bool firstPass();

    QFile m_file;
    QByteArray m_buffer;
    qsizetype m_position = 0;
    bool m_atEnd = false;
    bool m_first = true;
    bool m_utf8 = true;
    qint64 m_lineCount = 0;
    QString m_error;
};
