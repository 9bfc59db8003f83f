#pragma once

#include <QString>
#include <QStringList>

// The ground the concurrent clients share: a few taxpayers, each with one
// premises and one monthly return of January 2024 that every client adds
// lines to, and the forms' parameter strings as the tree and the dispatcher
// hand them over.
namespace Concurrency {

inline constexpr int kTaxpayers = 3;
inline constexpr int kClients = 8;
inline const QString kForm = QStringLiteral("F976");
inline const QString kDetail = QStringLiteral("F976_Detalle");
inline const QString kObjeto = QStringLiteral("0000000000001");
inline const QString kSharedPeriod = QStringLiteral("01-2024");

// The padrón of taxpayer `n` (1..kTaxpayers), as stored.
inline QString Padron(int n)
{
    return QStringLiteral("%1").arg(100 + n, 13, 10, QChar(u'0'));
}

// The Codigo of a declaration of taxpayer `n`: padrón, period without its
// "-", objeto, and "O" for an original or "R".
inline QString Codigo(int n, const QString& periodo, QChar letra)
{
    return Padron(n) + QString(periodo).remove(u'-') + kObjeto + letra;
}

// How the string of a declaration node of the tree begins.
inline QString Cabeza(int n, const QString& periodo)
{
    return QStringLiteral("Padron=") + Padron(n) + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=") + periodo.right(4) + QStringLiteral(";Periodo=") +
           periodo.left(2) + QStringLiteral(";Formulario=") + kForm;
}

// The string of a form not yet started in that period.
inline QString Nueva(int n, const QString& periodo)
{
    return Cabeza(n, periodo) +
           QStringLiteral(";Rectificativa=Falso;FechaRectificativa=0;FechaRectificativaNueva=0;"
                          "Nuevo=Verdadero;ConDatos=Falso;idEncFormulario=-1;ctrl=0;"
                          "idContribuyente=") +
           QString::number(n) + QStringLiteral(";Codigo=") + Codigo(n, periodo, u'O') + u';';
}

// The string of a stored version, as its node in the tree holds it.
inline QString Existente(int n, const QString& periodo, bool rectificativa, const QString& fecha,
                         const QString& ctrl)
{
    return Cabeza(n, periodo) + QStringLiteral(";Nuevo=Falso;ConDatos=Verdadero;Rectificativa=") +
           (rectificativa ? QStringLiteral("Verdadero") : QStringLiteral("Falso")) +
           QStringLiteral(";FechaRectificativa=") + fecha + QStringLiteral(";ctrl=") + ctrl +
           QStringLiteral(";idContribuyente=") + QString::number(n) + QStringLiteral(";Codigo=") +
           Codigo(n, periodo, rectificativa ? u'R' : u'O') + u';';
}

// The string of the form's "Agregar" on the shared return of taxpayer `n`.
inline QString AgregarLinea(int n)
{
    return QStringLiteral("Padron=") + Padron(n) + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=") + kSharedPeriod +
           QStringLiteral(";Rectificativa=False;Codigo=") + Codigo(n, kSharedPeriod, u'O') +
           QStringLiteral(";Formulario=") + kForm +
           QStringLiteral(";FechaRectificativa=0;DetalleNuevo=Verdadero;ctrl=0;");
}

// What a client writes to its ledger, one record a line, fields split by "|":
//   L|Codigo|FechaRectificativa|CodigoActividad   a line it stored
//   D|padrón|período|ctrl                          a new declaration it stored
//   R|padrón|período|ctrl                          a rectification it stored
//   N|padrón|período|ctrl                          ... under the next number (one was taken)
//   T|id|CUIT                                      a new taxpayer it stored
//   H|...                                          a version held by another workstation
//   S|...                                          a step the forms refused (the rules, not a
//   fault) F|message                                      a failure: a message a save must never
//   give

} // namespace Concurrency
