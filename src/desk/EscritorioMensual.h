#pragma once

#include <QVector>

#include "BuscadorContribuyentes.h"
#include "EstadoPresentaciones.h"
#include "VentanaAnual.h"

// "Escritorio del año": every taxpayer against the months of a year; a cell
// says whether every form that the month offers is filed. A double click opens
// that taxpayer's calendar on the year shown.
class EscritorioMensual : public VentanaAnual
{
    Q_OBJECT
public:
    EscritorioMensual();

    // How a taxpayer's month stands: "" when no premises opened it, "✓" when
    // every offered form is filed, "−n" with the count of those that are not.
    static QString Resumen(const EstadoPresentaciones& estado, const QString& periodo);

protected:
    void design() override;
    void onLoad() override;
    void mostrar() override;

private:
    void abrir(int row);

    BuscadorContribuyentes m_contribuyentes;
    QVector<int> m_orden;
    QVector<EstadoPresentaciones> m_estados;
};
