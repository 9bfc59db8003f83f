// The program's side of the spreadsheet helper: whatever the helper writes
// (a damaged helper, a cut pipe), the reading of its output neither crashes
// nor takes memory beyond the output's own size.
#include "SpreadsheetFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    SpreadsheetFile sheet;
    const QByteArray output =
        QByteArray("MORVEL-HOJA 1\n") + QByteArray(reinterpret_cast<const char*>(data), int(size));
    if (sheet.parse(output) && sheet.rowCount() > 0 && sheet.columnCount() <= 64)
        sheet.row(sheet.rowCount() - 1);
    return 0;
}
