#pragma once

#include "Controller.h"

// The choice of a model month, among those with declarations of the padrón,
// for a new month to start as its copy.
class CopiarDDJJ : public Controller
{
    Q_OBJECT
public:
    CopiarDDJJ();

    int IdContribuyente = 0;
    QString Padron;  // in
    QString Anio;    // out: "" when cancelled
    QString Periodo; // out: "mm"

protected:
    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;

private:
    void fillMonths();
    void aceptar();
};
