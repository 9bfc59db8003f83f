#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

// The first sheet of a workbook as rows of text cells, as a person sees them:
// numbers with "." as the decimal and no exponent, dates as dd-mm-yyyy. Rows
// keep their place in the sheet; rows after the last one holding a value are
// dropped, so a sheet formatted far below its data reads as its data.
class SpreadsheetReader
{
public:
    virtual ~SpreadsheetReader() = default;

    // The reader for the file's kind, by the last letter of its name: "s" for
    // the older binary workbook, "x" for the zipped one; null for any other.
    static std::unique_ptr<SpreadsheetReader> ForFile(const QString& path);

    // Reads the first sheet; false, with errorText(), when the file is not a
    // workbook that can be read.
    bool read(const QString& path);

    const QVector<QStringList>& rows() const { return m_rows; }
    // Columns up to the last one holding a value in any row.
    int columnCount() const { return m_columns; }
    const QString& errorText() const { return m_error; }

    // A number cell as a person sees it: the shortest text that gives the
    // same double, "." as the decimal, never an exponent.
    static QString NumberText(double value);
    // A spreadsheet day number as dd-mm-yyyy, counted from the workbook's epoch.
    static QString SerialDateText(double serial, bool epoch1904);

protected:
    virtual bool readFirstSheet(const QString& path) = 0;
    // Puts a cell's text at (row, col), both from 0.
    void setCell(int row, int col, const QString& text);
    void fail(const QString& error) { m_error = error; }

private:
    QVector<QStringList> m_rows;
    int m_columns = 0;
    QString m_error;
};
