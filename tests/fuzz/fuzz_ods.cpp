// The OpenDocument spreadsheet reader over any bytes: it reads the sheet or
// refuses the file, within bounded memory and cells, and never crashes.
#include "FuzzSupport.h"
#include "OdsReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    OdsReader reader;
    reader.read(FuzzInputFile(".ods", data, size));
    return 0;
}
