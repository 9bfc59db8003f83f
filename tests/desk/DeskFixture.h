#pragma once

#include <QString>
#include <QStringList>

#include "Db.h"
#include "Seed.h"

// Taxpayers of an accountant's desk, each with one premises whose padrón is
// the taxpayer's id, and their declarations as the forms leave them.
namespace Desk {

inline QString cuitOf(int id)
{
    return QStringLiteral("20%1").arg(id, 8, 10, QLatin1Char('0')) + u'6';
}

inline QString padronOf(int id)
{
    return Seed::Pad13(QString::number(id));
}

// `more` changes the premises: "retencion=1", "grupo=<null>", "regimen=2".
inline void addTaxpayer(int id, const QString& name, const QStringList& more = {})
{
    Seed::AddTaxpayer(id, name, cuitOf(id));
    Seed::AddPremises(QString::number(id), QStringLiteral("1"),
                      QStringList{"cuit=" + cuitOf(id), QStringLiteral("grupo=1")} + more);
}

// A declaration of the taxpayer's premises; a rectification (ctrl above 0)
// is dated the 20th of the month after. F976 gets one activity line.
inline QString addDeclaration(int id, const QString& form, const QString& periodo, int ctrl = 0,
                              const QStringList& columns = {})
{
    const QString fecha =
        ctrl == 0 ? QStringLiteral("0")
                  : QStringLiteral("2%1-").arg(ctrl) +
                        QStringLiteral("%1-%2")
                            .arg(periodo.left(2).toInt() % 12 + 1, 2, 10, QLatin1Char('0'))
                            .arg(periodo.right(4));
    const QString codigo = Seed::AddDeclaration(
        {form, periodo, ctrl, fecha, QString::number(id), QStringLiteral("1"), columns});
    if (form == QLatin1String("F976"))
        Seed::AddLine(form, codigo, fecha, QString::number(ctrl), QStringLiteral("0001"),
                      {"TipoActividad=Comercio", "CodigoActividad=620100",
                       "BaseImponible=10.000,00", "Alicuota=1,00", "Impuesto=100,00"});
    return codigo;
}

} // namespace Desk

#include "Globals.h"
#include "Transaction.h"
#include "ZoAccess.h"

namespace Desk {

// A realistic desk: `count` taxpayers, people and firms, each with one
// premises (every fourth a retention agent, every tenth PROCOM), and a year
// of filings in which the later months are less and less complete. Every
// eighth declares retentions backed by an F977, which in June disagrees by a
// peso; taxpayer 13's June total is mistyped and taxpayer 27 has no group.
inline void seedDesk(int count, int year)
{
    static const QStringList surnames = {
        "GONZÁLEZ", "RODRÍGUEZ", "GÓMEZ",   "FERNÁNDEZ", "LÓPEZ",  "DÍAZ",    "MARTÍNEZ",
        "PÉREZ",    "GARCÍA",    "SÁNCHEZ", "ROMERO",    "SOSA",   "ÁLVAREZ", "TORRES",
        "RUIZ",     "RAMÍREZ",   "FLORES",  "BENÍTEZ",   "ACOSTA", "MEDINA",  "NÚÑEZ"};
    static const QStringList names = {"JUAN",  "MARÍA", "CARLOS", "ANA",    "JOSÉ",
                                      "LUCÍA", "JORGE", "SOFÍA",  "MIGUEL", "INÉS"};
    static const QStringList firms = {"S.A.", "S.R.L.", "S.A.S.", "Y ASOCIADOS", "HNOS."};
    Transaction unit(gAccess(), Transaction::Mode::KeepWhatPassed);
    for (int id = 1; id <= count; ++id) {
        const QString surname = surnames.at(id % surnames.size());
        const QString name = id % 3 == 0 ? surname + u' ' + firms.at(id % firms.size())
                                         : surname + u' ' + names.at((id / 3) % names.size());
        QStringList premises;
        if (id % 4 == 0)
            premises << QStringLiteral("retencion=1");
        if (id % 10 == 0)
            premises << QStringLiteral("regimen=1");
        if (id == 27)
            premises << QStringLiteral("grupo=<null>");
        addTaxpayer(id, name, premises);
        const QString main = id % 10 == 0 ? QStringLiteral("F2001") : QStringLiteral("F976");
        const int filedMonths = 12 - id % 5;
        for (int month = 1; month <= filedMonths; ++month) {
            const QString periodo =
                QStringLiteral("%1-%2").arg(month, 2, 10, QLatin1Char('0')).arg(year);
            const QString total =
                id == 13 && month == 6
                    ? QStringLiteral("1.2O0,00")
                    : QString::number(1000 + (id * 37 + month * 11) % 9000) + ",00";
            QStringList columns{"TotalAPagar=" + total};
            if (id % 8 == 4) {
                columns << QStringLiteral("Retenciones=150,00");
                addDeclaration(id, QStringLiteral("F977"), periodo, 0,
                               {month == 6 ? QStringLiteral("TotalPercepciones=149,00")
                                           : QStringLiteral("TotalPercepciones=150,00")});
            }
            addDeclaration(id, main, periodo, 0, columns);
            if ((id + month) % 7 == 0)
                addDeclaration(id, main, periodo, 1, columns);
            if (id % 4 == 0 && month + 2 <= filedMonths)
                addDeclaration(id, QStringLiteral("F986"), periodo, 0,
                               {"ImporteDepositar=" + QString::number(100 + id) + ",50"});
        }
    }
}

} // namespace Desk
