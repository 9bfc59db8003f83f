#include "XlsReader.h"

#include <QFile>
#include <freexl.h>

namespace {

// "YYYY-MM-DD", perhaps followed by a time, as dd-mm-yyyy.
QString dayText(const char* isoText)
{
    const QString iso = QString::fromUtf8(isoText).left(10);
    if (iso.size() != 10)
        return iso;
    return iso.mid(8, 2) + u'-' + iso.mid(5, 2) + u'-' + iso.left(4);
}

class FreeXlHandle
{
public:
    ~FreeXlHandle()
    {
        if (m_handle)
            freexl_close(m_handle);
    }
    const void** out() { return &m_handle; }
    const void* get() const { return m_handle; }

private:
    const void* m_handle = nullptr;
};

} // namespace

bool XlsReader::readFirstSheet(const QString& path)
{
    FreeXlHandle xls;
    const QByteArray local = QFile::encodeName(path);
    if (freexl_open(local.constData(), xls.out()) != FREEXL_OK || !xls.get()) {
        fail(QStringLiteral("El archivo no es una hoja de cálculo de Excel válida."));
        return false;
    }
    unsigned int sheets = 0;
    if (freexl_get_info(xls.get(), FREEXL_BIFF_SHEET_COUNT, &sheets) != FREEXL_OK || sheets == 0 ||
        freexl_select_active_worksheet(xls.get(), 0) != FREEXL_OK) {
        fail(QStringLiteral("El archivo no contiene hojas."));
        return false;
    }
    unsigned int rows = 0;
    unsigned short columns = 0;
    if (freexl_worksheet_dimensions(xls.get(), &rows, &columns) != FREEXL_OK) {
        fail(QStringLiteral("No se pudo leer la primera hoja del archivo."));
        return false;
    }
    for (unsigned int r = 0; r < rows; ++r) {
        for (unsigned short c = 0; c < columns; ++c) {
            FreeXL_CellValue cell;
            if (freexl_get_cell_value(xls.get(), r, c, &cell) != FREEXL_OK)
                continue;
            switch (cell.type) {
            case FREEXL_CELL_INT: setCell(int(r), c, QString::number(cell.value.int_value)); break;
            case FREEXL_CELL_DOUBLE: setCell(int(r), c, NumberText(cell.value.double_value)); break;
            case FREEXL_CELL_TEXT:
            case FREEXL_CELL_SST_TEXT:
            case FREEXL_CELL_TIME:
                setCell(int(r), c, QString::fromUtf8(cell.value.text_value));
                break;
            case FREEXL_CELL_DATE:
            case FREEXL_CELL_DATETIME: setCell(int(r), c, dayText(cell.value.text_value)); break;
            default: break;
            }
        }
    }
    return true;
}
