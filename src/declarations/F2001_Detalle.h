#pragma once

#include "DetalleDialog.h"

// The detail dialog of F2001: one line of the declaration.
class F2001_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F2001_Detalle();

protected:
    void design() override;
};
