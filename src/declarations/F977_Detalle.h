#pragma once

#include "DetalleDialog.h"

// The detail dialog of F977: one line of the declaration.
class F977_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F977_Detalle();

protected:
    void design() override;
};
