// The zipped workbook reader over any bytes: it reads the sheet or refuses
// the file, within bounded memory, and never crashes.
#include "FuzzSupport.h"
#include "XlsxReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    XlsxReader reader;
    reader.read(FuzzInputFile(".xlsx", data, size));
    return 0;
}
