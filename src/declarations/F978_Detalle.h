#pragma once

#include "DetalleComprobante.h"

// The receipt dialog of F978: one perception the taxpayer suffered.
class F978_Detalle : public DetalleComprobante
{
    Q_OBJECT
public:
    F978_Detalle();
};
