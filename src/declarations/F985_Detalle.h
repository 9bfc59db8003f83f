#pragma once

#include "DetalleComprobante.h"

// The receipt dialog of F985: one retention the agent made.
class F985_Detalle : public DetalleComprobante
{
    Q_OBJECT
public:
    F985_Detalle();
};
