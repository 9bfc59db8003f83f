#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

// The first sheet of an outside workbook (.xls or .xlsx), read by the helper
// program morvel-hoja in a process of its own, with bounds on its memory,
// time and output: a damaged or hostile file can end that process, never
// this one, and then the sheet is reported as damaged.
//
// Only the cells that hold a value are kept. Rows after the last one holding
// a value are not rows of the sheet, so a sheet formatted far below its data
// reads as its data.
class SpreadsheetFile
{
public:
    // The bounds of the helper's run.
    static constexpr qint64 kMaxMemory = 512ll << 20;
    static constexpr int kMaxSeconds = 30;
    static constexpr qint64 kMaxOutput = 64ll << 20;

    // Reads the first sheet; false when it could not, with errorText() when
    // the file is not a workbook, or damaged() when the helper failed or hit
    // one of its bounds.
    bool read(const QString& path);
    const QString& errorText() const { return m_error; }
    bool damaged() const { return m_damaged; }

    // Rows up to the last one holding a value.
    int rowCount() const { return m_rowCount; }
    // Columns up to the last one holding a value in any row.
    int columnCount() const { return m_columnCount; }
    // The row's cells, columnCount() of them; empty texts where it has none
    // and after its own last value.
    QStringList row(int r) const;
    // Whether the row holds anything but blanks.
    bool hasValue(int r) const { return m_width.value(r) > 0; }

    // Takes the helper's output; false when it is not whole and well formed.
    bool parse(const QByteArray& output);

    // The helper beside the program, else the one of the build tree.
    static QString HelperPath();

private:
    void clear();
    bool run(const QString& path, QByteArray& output);

    QMap<int, QMap<int, QString>> m_cells;
    QMap<int, int> m_width; // per row: columns up to its last value
    int m_rowCount = 0;
    int m_columnCount = 0;
    QString m_error;
    bool m_damaged = false;
};
