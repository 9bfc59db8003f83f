// The older binary workbook reader of the spreadsheet helper (FreeXL) over
// any bytes. The helper runs it in a bounded process of its own; here it runs
// bare, so that what FreeXL does with a damaged file shows.
#include "FuzzSupport.h"
#include "XlsReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    XlsReader reader;
    reader.read(FuzzInputFile(".xls", data, size));
    return 0;
}
