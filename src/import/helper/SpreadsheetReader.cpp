#include "SpreadsheetReader.h"

#include <QDate>
#include <QFileInfo>
#include <QLocale>
#include <cmath>

#include "OdsReader.h"
#include "XlsReader.h"
#include "XlsxReader.h"

std::unique_ptr<SpreadsheetReader> SpreadsheetReader::ForFile(const QString& path)
{
    const QString name = QFileInfo(path).fileName().toLower();
    if (name.endsWith(QLatin1String(".ods")))
        return std::make_unique<OdsReader>();
    if (name.endsWith(u's'))
        return std::make_unique<XlsReader>();
    if (name.endsWith(u'x'))
        return std::make_unique<XlsxReader>();
    return nullptr;
}

bool SpreadsheetReader::read(const QString& path)
{
    m_cells.clear();
    m_error.clear();
    if (!QFileInfo(path).isFile()) {
        fail(QStringLiteral("El archivo no existe."));
        return false;
    }
    if (!readFirstSheet(path)) {
        m_cells.clear();
        if (m_error.isEmpty())
            fail(QStringLiteral("El archivo no es una hoja de cálculo válida."));
        return false;
    }
    return true;
}

void SpreadsheetReader::setCell(int row, int col, const QString& text)
{
    if (row < 0 || col < 0 || row >= kMaxRows || col >= kMaxColumns || text.isEmpty())
        return;
    m_cells[{row, col}] = text;
}

QString SpreadsheetReader::NumberText(double value)
{
    if (!std::isfinite(value))
        return QString();
    if (value == 0)
        return QStringLiteral("0");
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

QString SpreadsheetReader::SerialDateText(double serial, bool epoch1904)
{
    if (!std::isfinite(serial) || serial < 0 || serial > 2958465)
        return NumberText(serial);
    const qint64 days = qint64(std::floor(serial));
    QDate date;
    if (epoch1904)
        date = QDate(1904, 1, 1).addDays(days);
    else if (days < 60) // the days before the calendar's phantom 29-02-1900
        date = QDate(1899, 12, 31).addDays(days);
    else
        date = QDate(1899, 12, 30).addDays(days);
    return date.toString(QStringLiteral("dd-MM-yyyy"));
}
