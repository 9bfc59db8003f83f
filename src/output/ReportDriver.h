#pragma once

#include <QList>
#include <QString>

#include "ReportJob.h"

// The printed forms of a declaration: `Imprimir` reads the declaration's rows,
// prepares the values of its layout (parameter fields in slot order, and for
// the annexes the staging table completed to full pages) and hands the
// printings to the report printer.
class ReportDriver
{
public:
    // The printings of one declaration named by a parameter string: one for
    // F976 and F2001 (none for an F976 without lines), two for the others,
    // "ORIGINAL MUNICIPALIDAD" and "DUPLICADO CONTRIBUYENTE". Failed reads
    // are passed over: the printing gets the values at hand.
    static QList<ReportJob> Prepare(const QString& parametros);

    // Fills the staging table of an annex with blank lines up to a full page
    // of 25; the number of real lines.
    static int CompletarDetalleReporte(const QString& form);

    // Prepares and prints one copy of the declaration; with `preview` shows
    // it on the screen instead. False when nothing could be printed, and
    // then `why` says why, in the person's words.
    static bool Imprimir(const QString& parametros, bool preview = false, QString* why = nullptr);

    static constexpr int kLinesPerPage = 25;
    static constexpr int kActivityLines = 6;
};
