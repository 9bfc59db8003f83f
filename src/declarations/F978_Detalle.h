#pragma once

#include "DetalleDialog.h"

// The detail dialog of F978: one line of the declaration.
class F978_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F978_Detalle();

protected:
    void design() override;
};
