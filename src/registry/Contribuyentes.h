#pragma once

#include "Controller.h"

// The dialog "Contribuyentes / Locales Comerciales": one taxpayer, its CUIT
// and name, and its commercial premises.
class Contribuyentes : public Controller
{
    Q_OBJECT
public:
    Contribuyentes();

    // Set by the opener before showing; read after it closes.
    QString ConnectionString;
    QString Id;            // idContribuyente to edit; filled after an insert
    bool NewRecord = true; // a new taxpayer, or edit Id
    bool Saved = false;    // ended through Aceptar with the save done
    QString GetNombre;     // the name as it stood when the window closed

protected:
    void design() override;
};
