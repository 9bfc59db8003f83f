// An annex of perceptions with 5,000 lines: the time to load it, to
// recalculate its total and to save it (with the comparison against the
// return of the period), each against a target of half a second.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

#include "Globals.h"
#include "RegionalSettings.h"
#include "ScriptedUi.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "declarations/F978.h"

namespace {

const QString kPadron = QStringLiteral("0000000012345");
const QString kObjeto = QStringLiteral("0000000000007");
const QString kCodigo = kPadron + QStringLiteral("032024") + kObjeto + QStringLiteral("O");
constexpr int kLines = 5000;

void seed()
{
    ZoAccess& db = gAccess();
    db.Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) "
                              "VALUES (1, 'GÓMEZ, ANA', '20-12345678-6')"));
    db.Execute(QStringLiteral("INSERT INTO tPadronesComerciales (idContribuyente, cuit, padron, "
                              "objeto, razon_social, percepcion, retencion, regimen) VALUES (1, "
                              "'20123456786', '") +
               kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', 'ALMACÉN', '1', '0', '1')"));
    // The PROCOM return of the period, five pesos away: the save adjusts.
    db.Execute(QStringLiteral("INSERT INTO F2001 (Codigo, Padron, Objeto, Periodo, Rectificativa, "
                              "FechaRectificativa, Percepciones, ctrl) VALUES ('") +
               kCodigo + QStringLiteral("', '") + kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', '03-2024', 'False', '0', '62.505,00', '0')"));
    db.Execute(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES ('") +
               kPadron + QStringLiteral("', '") + kObjeto +
               QStringLiteral("', '03-2024', 'F2001', 'False', '0', '0')"));
    {
        Transaction unit(db, Transaction::Mode::KeepWhatPassed);
        for (int i = 1; i <= kLines; ++i)
            db.Execute(QStringLiteral("INSERT INTO F978_Detalle (Codigo, FechaRectificativa, "
                                      "CodigoDetalle, Fecha, TipoComprobante, NroComprobante, "
                                      "Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('") +
                       kCodigo + QStringLiteral("', '0', '") +
                       QString::number(i).rightJustified(4, u'0') +
                       QStringLiteral("', '05-03-2024', 'FACA - Factura A', '") +
                       QString::number(i).rightJustified(15, u'0') +
                       QStringLiteral("', 'PROVEEDOR', '30-71234567-1', '0000000000099', '12,50', "
                                      "'0')"));
    }
}

void report(const char* step, qint64 ms)
{
    std::printf("%-12s %6lld ms  %s\n", step, static_cast<long long>(ms),
                ms < 500 ? "ok" : "SLOW (target 500 ms)");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    SetAppPath(dir.filePath(QStringLiteral("data")));
    Regional::reload();
    gDecimalSymbol = QStringLiteral(",");
    ScriptedUi person;
    person.setStrict(false);
    setUi(&person);
    CreateCurrentDatabase();
    seed();

    F978 form;
    form.Parametros = QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") +
                      kObjeto +
                      QStringLiteral(";Anio=2024;Periodo=03;Formulario=F978;Nuevo=Falso;"
                                     "ConDatos=Verdadero;Rectificativa=Falso;"
                                     "FechaRectificativa=0;ctrl=0;Codigo=") +
                      kCodigo + u';';
    QElapsedTimer t;
    t.start();
    form.load();
    report("load", t.restart());
    form.cargaDatos(2);
    report("recalculate", t.restart());
    form.VerificarDeclarado();
    form.GrabarFormulario();
    report("save", t.elapsed());
    std::printf("lines %d, total %s\n", form["gridFormulario"].rowCount(),
                qPrintable(form["txtTotalPercepciones"].text()));
    CloseDatabase();
    setUi(nullptr);
    return 0;
}
