#pragma once

#include "SpreadsheetReader.h"

// The older binary workbook (.xls), read through FreeXL.
class XlsReader : public SpreadsheetReader
{
protected:
    bool readFirstSheet(const QString& path) override;
};
