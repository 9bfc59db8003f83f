// The declaration tree of a large taxpayer: twenty years of declarations of all
// eight forms, each with two rectifications, about 6,000 nodes. Prints the
// milliseconds to build the tree from the tables.
// Usage: bench_tree [runs]
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include "Field.h"
#include "Globals.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "navigation/ZoForms.h"

namespace {

const QString kPadron = QStringLiteral("0000000004711");
const QString kObjeto = QStringLiteral("0000000000001");
const QStringList kForms = {QStringLiteral("F976"), QStringLiteral("F2001"), QStringLiteral("F977"),
                            QStringLiteral("F978"), QStringLiteral("F985"),  QStringLiteral("F986"),
                            QStringLiteral("F987"), QStringLiteral("F988")};

void addVersion(ZoAccess& db, const QString& form, const QString& period, int ctrl)
{
    const QString rect = ctrl == 0 ? QStringLiteral("False") : QStringLiteral("Verdadero");
    const QString date =
        ctrl == 0 ? QStringLiteral("0") : QStringLiteral("%1-%2").arg(10 + ctrl).arg(period);
    db.Execute(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES "
                              "('%1', '%2', '%3', '%4', '%5', '%6', '%7')")
                   .arg(kPadron, kObjeto, period, form, rect, date, QString::number(ctrl)));
    if (form == QLatin1String("F976") || form == QLatin1String("F2001"))
        db.Execute(QStringLiteral("INSERT INTO %1 (Padron, Objeto, Periodo, Rectificativa, "
                                  "FechaRectificativa, ctrl, Retenciones, Percepciones) VALUES "
                                  "('%2', '%3', '%4', '%5', '%6', '%7', '10,00', '20,00')")
                       .arg(form, kPadron, kObjeto, period, rect, date, QString::number(ctrl)));
}

void buildData()
{
    ZoAccess& db = gAccess();
    {
        Transaction unit(db, Transaction::Mode::KeepWhatPassed);
        db.Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, "
                                  "Cuit) VALUES (1, 'GRAN CONTRIBUYENTE S.A.', '30-71234567-1')"));
        db.Execute(QStringLiteral("INSERT INTO tPadronesComerciales (cuit, padron, objeto, "
                                  "regimen, retencion, percepcion) VALUES ('30712345671', '%1', "
                                  "'%2', '2', '0', '0')")
                       .arg(kPadron, kObjeto));
        for (int year = 2005; year < 2025; ++year)
            for (int month = 1; month <= 12; ++month) {
                const QString period =
                    QStringLiteral("%1-%2").arg(month, 2, 10, QLatin1Char('0')).arg(year);
                for (const QString& form : kForms)
                    for (int ctrl = 0; ctrl < 3; ++ctrl)
                        addVersion(db, form, period, ctrl);
            }
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 5;
    QTemporaryDir dir;
    SetAppPath(dir.filePath(QStringLiteral("data")));
    gDecimalSymbol = QStringLiteral(",");
    CreateCurrentDatabase();
    buildData();

    QTextStream out(stdout);
    Field tree(QStringLiteral("trvDatos"), FieldKind::Tree);
    qint64 best = -1;
    for (int run = 1; run <= runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        gForms().FillTreeViewContribuyenteOpciones(tree, QStringLiteral("1"));
        gForms().FillTreeViewLocales(tree, QStringLiteral("1"));
        const qint64 ms = timer.elapsed();
        best = best < 0 ? ms : qMin(best, ms);
        out << "run " << run << ": " << tree.tree().count() << " nodes in " << ms << " ms\n";
    }
    out << "tree of " << tree.tree().count() << " nodes: best " << best << " ms\n";
    ResetForms();
    CloseDatabase();
    return 0;
}
