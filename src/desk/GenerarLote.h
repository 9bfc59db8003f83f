#pragma once

#include <QVector>

#include "BuscadorContribuyentes.h"
#include "Controller.h"

// "Generar período": a whole period for all taxpayers or those chosen, each
// into its own folder, with a progress bar, a cancel button and a summary of
// what was written and what was skipped and why.
class GenerarLote : public Controller
{
    Q_OBJECT
public:
    GenerarLote();

protected:
    void design() override;
    void onLoad() override;

private:
    void designSeleccion();
    void marcar(int row);
    void marcarTodos(bool on);
    void generar();
    void cancelar();

    BuscadorContribuyentes m_contribuyentes;
    QVector<int> m_orden;
    bool m_corriendo = false;
    bool m_cancelar = false;
};

// The period before the current month, mm-yyyy: the one that is filed now.
QString PeriodoAnterior();
