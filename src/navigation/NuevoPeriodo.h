#pragma once

#include "Controller.h"

// "Selección de Formularios": the month to open under a year, perhaps as a
// copy of a model month chosen through "Copiar".
class NuevoPeriodo : public Controller
{
    Q_OBJECT
public:
    NuevoPeriodo();

    QString Periodo; // "mm"; "" when cancelled
    int IdContribuyente = 0;
    QString Padron;
    QString Objeto;
    QString AnioModelo; // "-1" without a model
    const QString& PeriodoModelo() const { return m_periodoModelo; }
    int Min = 1;
    int Max = 12;

protected:
    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;

private:
    void padMonth();
    void aceptar();
    void cancelar();
    void copiar();

    QString m_periodoModelo;
};
