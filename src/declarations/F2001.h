#pragma once

#include "DeclaracionMensual.h"

// The monthly return under PROCOM: the activity lines of F976, its own
// columns I and II, and a total reduced only by the payment on account.
class F2001 : public DeclaracionMensual
{
    Q_OBJECT
public:
    F2001();

    void RecalcularTotales() override;

protected:
    void cargarMontos(int tipo) override;
    bool rechazaMonto(const QString& campo) override;
    void alSalirMonto(const QString& campo) override;
    QVector<QPair<QString, QString>> columnasAlta() override;

private:
    // At most one "." in an amount.
    bool ValidoPunto(const QString& campo);
};
