#pragma once

#include "VentanaEscritorio.h"

// A window that shows one year at a time, with buttons to the year before and
// after: the calendar of a taxpayer and the desk of all of them.
class VentanaAnual : public VentanaEscritorio
{
    Q_OBJECT
public:
    using VentanaEscritorio::VentanaEscritorio;

    // The year shown; 0 lets the window choose (the current year).
    int Anio = 0;

protected:
    // Adds the year's fields and the close button; the window's own fields go
    // between them.
    void designAnio();
    void designCerrar();
    // Draws the year `Anio`.
    virtual void mostrar() = 0;
    void cambiarAnio(int delta);
};
