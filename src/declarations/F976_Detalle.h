#pragma once

#include "DetalleDialog.h"

// The detail dialog of F976: one line of the declaration.
class F976_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F976_Detalle();

protected:
    void design() override;
};
