#pragma once

#include "EstadoPresentaciones.h"
#include "VentanaAnual.h"

// "Calendario de presentaciones": the months of a year of one taxpayer against
// each premises' forms; each cell says whether the month is not opened,
// offered and not filed, filed, or rectified, with the return's total. A
// double click opens that declaration as the taxpayer's tree would.
class CalendarioPresentaciones : public VentanaAnual
{
    Q_OBJECT
public:
    CalendarioPresentaciones();

    int IdContribuyente = 0;

    // The cell of a row and month (1 to 12) of the year shown.
    CeldaPresentacion Celda(int row, int mes) const;

protected:
    void design() override;
    void onLoad() override;
    void mostrar() override;

private:
    void abrir(int row, int column);

    EstadoPresentaciones m_estado;
};
