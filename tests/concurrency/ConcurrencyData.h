#pragma once

#include <QString>
#include <QStringList>

#include "../declarations/FormFixture.h"

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

// The premises of taxpayer `n` and a period, to build the forms' strings
// and keys with (fx::nuevo, fx::existente, fx::detalle, fx::codigo).
inline fx::Lugar Lugar(int n, const QString& periodo)
{
    return {Padron(n), kObjeto, periodo, n};
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
