#pragma once

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include "OutputFixture.h"
#include "output/ReportPrinter.h"

// The declarations of January 2010 of the submission tests, with the
// premises' signer, its taxpayer and the premises marked as principal.
namespace PrintingFixture {

using namespace OutputFixture;

inline bool loadTaxpayer()
{
    return gAccess().Execute("UPDATE tPadronesComerciales SET Suscriptor = 'PEREZ JUAN CARLOS', "
                             "Caracter = 'Presidente', Principal = 'S'") &&
           gAccess().Execute("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) "
                             "VALUES (1, 'PEREZ JUAN', '20-12345678-6')");
}

class Database
{
public:
    bool build()
    {
        TestEnv env;
        env.createDatabase();
        if (!loadDeclarations() || !loadTaxpayer())
            return false;
        CloseDatabase();
        QFile file(DatabasePath());
        m_bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return !m_bytes.isEmpty();
    }
    bool install() const
    {
        QFile file(DatabasePath());
        return file.open(QIODevice::WriteOnly) && file.write(m_bytes) == m_bytes.size();
    }

private:
    QByteArray m_bytes;
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
    gAccess().Execute("DELETE * FROM F987_Detalle");
    for (int i = 1; i <= count; ++i) {
        gAccess().Execute(
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
