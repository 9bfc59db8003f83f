#pragma once

#include "Controller.h"

// "Generación de Disco": the dialog by which declarations leave the system as
// a submission file and printed copies. It takes its place here with its
// properties; the dialog itself comes with the printed forms.
class GenerarDisco : public Controller
{
    Q_OBJECT
public:
    GenerarDisco();

    // One parameter string, or with TotalPeriodo several joined by "#".
    QString Parametros;
    bool TotalPeriodo = false;

protected:
    void design() override;
};
