#pragma once

#include "output/ReportPrinter.h"

class QWidget;

// The printed forms on this desktop: the system's printers through the print
// dialog, a preview window with the rendered pages, and PDF files.
class QtReportPrinter : public ReportPrinter
{
public:
    bool hasPrinter() const override;
    void preview(const QList<ReportJob>& jobs) override;

protected:
    bool printPages(const QList<ReportJob>& jobs) override;
};
