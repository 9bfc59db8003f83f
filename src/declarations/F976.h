#pragma once

#include "DeclaracionMensual.h"

// The monthly return of the general regime: up to six activity lines, credits
// in column I, the levy in column II, and the amount to pay.
class F976 : public DeclaracionMensual
{
    Q_OBJECT
public:
    F976();

    // Derives the subtotals, the balances and the total, each step rendered
    // to two decimals before the next reads it.
    void RecalcularTotales() override;

protected:
    void alSalirMonto(const QString& campo) override;
    void despuesDeBorrarTodo() override;
};
