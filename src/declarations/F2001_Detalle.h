#pragma once

#include "DetalleActividad.h"

// The line dialog of F2001: one activity of the PROCOM return.
class F2001_Detalle : public DetalleActividad
{
    Q_OBJECT
public:
    F2001_Detalle();
};
