#pragma once

#include "DetalleActividad.h"

// The line dialog of F976: one activity of the general regime's return.
class F976_Detalle : public DetalleActividad
{
    Q_OBJECT
public:
    F976_Detalle();
};
