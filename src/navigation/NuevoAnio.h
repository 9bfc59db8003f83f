#pragma once

#include "Controller.h"

// "Selección de Formularios": the year to open under a premises.
class NuevoAnio : public Controller
{
    Q_OBJECT
public:
    NuevoAnio();

    int Anio = 0; // 0: cancelled
    int Min = 1950;
    int Max = 2050;

protected:
    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;

private:
    void aceptar();
};
