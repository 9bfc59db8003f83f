#pragma once

#include "DetalleComprobante.h"

// The receipt dialog of F977: one retention the taxpayer suffered.
class F977_Detalle : public DetalleComprobante
{
    Q_OBJECT
public:
    F977_Detalle();
};
