#pragma once

#include <QString>
#include <map>
#include <memory>
#include <utility>

// The first sheet of a workbook as text cells, as a person sees them: numbers
// with "." as the decimal and no exponent, dates as dd-mm-yyyy. Only the
// cells that hold a value are kept, by their place in the sheet: two cells
// far apart take the memory of two cells, not of the rows and columns
// between them.
class SpreadsheetReader
{
public:
    // (row, column), both from 0.
    using Cells = std::map<std::pair<int, int>, QString>;

    virtual ~SpreadsheetReader() = default;

    // The reader for the file's kind, by its name: ".ods" for the
    // OpenDocument spreadsheet, else by the last letter, "s" for the older
    // binary workbook, "x" for the zipped one; null for any other.
    static std::unique_ptr<SpreadsheetReader> ForFile(const QString& path);

    // Reads the first sheet; false, with errorText(), when the file is not a
    // workbook that can be read.
    bool read(const QString& path);

    const Cells& cells() const { return m_cells; }
    const QString& errorText() const { return m_error; }

    // A number cell as a person sees it: the shortest text that gives the
    // same double, "." as the decimal, never an exponent.
    static QString NumberText(double value);
    // A spreadsheet day number as dd-mm-yyyy, counted from the workbook's epoch.
    static QString SerialDateText(double serial, bool epoch1904);

    // The bounds of a sheet: the largest that the zipped workbook allows.
    static constexpr int kMaxRows = 1048576;
    static constexpr int kMaxColumns = 16384;

protected:
    virtual bool readFirstSheet(const QString& path) = 0;
    // Puts a cell's text at (row, col), both from 0; an empty text or a place
    // outside the sheet's bounds puts nothing.
    void setCell(int row, int col, const QString& text);
    void fail(const QString& error) { m_error = error; }

private:
    Cells m_cells;
    QString m_error;
};
