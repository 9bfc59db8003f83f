#pragma once

#include "DetalleComprobante.h"

// The receipt dialog of F987: one perception the agent made; a stored type
// is shown with its description from the catalogue.
class F987_Detalle : public DetalleComprobante
{
    Q_OBJECT
public:
    F987_Detalle();
};
