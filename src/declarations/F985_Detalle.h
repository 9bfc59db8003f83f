#pragma once

#include "DetalleDialog.h"

// The detail dialog of F985: one line of the declaration.
class F985_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F985_Detalle();

protected:
    void design() override;
};
