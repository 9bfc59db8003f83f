#pragma once

#include <QByteArray>
#include <QVector>
#include <utility>

#include "SpreadsheetReader.h"

class QXmlStreamReader;

// The OpenDocument spreadsheet (.ods), the workbook of LibreOffice: libzip
// opens the container, QXmlStreamReader reads the first table of
// content.xml. Cells hold their value beside the text shown (a number, a
// day, a truth value), and that value is what is read. Runs of equal rows
// and cells are written once with a count: empty runs are skipped whatever
// their count, and runs that hold values are repeated up to a bound on the
// cells of the sheet.
class OdsReader : public SpreadsheetReader
{
public:
    // More cells holding a value than any sheet of detail lines has.
    static constexpr qint64 kMaxValueCells = 2000000;

protected:
    bool readFirstSheet(const QString& path) override;

private:
    using RowCells = QVector<std::pair<int, QString>>; // (column, text)

    bool readTable(const QByteArray& xml);
    // Reads the row the reader stands on; false when the sheet holds too
    // many cells.
    bool readRow(QXmlStreamReader& xml, int& row);
    // The cell the reader stands on, read to its end.
    static QString cellText(QXmlStreamReader& xml);

    qint64 m_valueCells = 0;
};
