#pragma once

#include "DetalleDialog.h"

// The detail dialog of F987: one line of the declaration.
class F987_Detalle : public DetalleDialog
{
    Q_OBJECT
public:
    F987_Detalle();

protected:
    void design() override;
};
