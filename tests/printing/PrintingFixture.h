#pragma once

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include "Db.h"
#include "OutputFixture.h"
#include "Seed.h"
#include "output/ReportPrinter.h"

// The declarations of January 2010 of the submission tests, with the
// premises' signer, its taxpayer and the premises marked as principal.
namespace PrintingFixture {

using namespace OutputFixture;

// The fixture's signer and its taxpayer, the premises marked as principal.
inline bool loadTaxpayer()
{
    Db::exec("UPDATE tPadronesComerciales SET Suscriptor = 'PEREZ JUAN CARLOS', "
             "Caracter = 'Presidente', Principal = 'S'");
    Seed::AddTaxpayer(1, "PEREZ JUAN", "20-12345678-6");
    return true;
}

// The database of the printing tests, built once.
class Database : public FixtureDatabase
{
public:
    bool build() { return FixtureDatabase::build(true, loadTaxpayer); }
};

// The text of a PDF as pdftotext reads it; a null text when the tool is
// missing.
inline QString pdfText(const QString& path)
{
    if (QStandardPaths::findExecutable("pdftotext").isEmpty())
        return {};
    QProcess tool;
    tool.start("pdftotext", {"-layout", path, "-"});
    if (!tool.waitForFinished(60000))
        return QStringLiteral("pdftotext did not finish");
    return QString::fromUtf8(tool.readAllStandardOutput());
}

// Adds detail lines 1..count to the F987 rectification of the fixture.
inline void addF987Lines(int count)
{
    Db::exec("DELETE * FROM F987_Detalle");
    for (int i = 1; i <= count; ++i) {
        Db::exec(
            QString("INSERT INTO F987_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, "
                    "TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, "
                    "ImportePercibido, ctrl) VALUES ('%1R', '25-02-2010', '%2', '12-01-2010', "
                    "'FACB - Factura B', '0004-%3', 'Cliente %2', '27222222223', "
                    "'0000000055555', '%4,00', '1')")
                .arg(kPadron + "012010" + kObjeto)
                .arg(i, 4, 10, QChar('0'))
                .arg(i, 8, 10, QChar('0'))
                .arg(i));
    }
}

} // namespace PrintingFixture
