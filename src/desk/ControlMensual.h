#pragma once

#include <QVector>

#include "RevisionMensual.h"
#include "VentanaEscritorio.h"

// "Control del mes": the check of one period before filing, for the taxpayer
// chosen in the finder or for all; one report on screen, printable and
// savable as PDF, each line opening the declaration it names.
class ControlMensual : public VentanaEscritorio
{
    Q_OBJECT
public:
    ControlMensual();

    // The taxpayer chosen in the finder; 0 for none.
    int IdContribuyente = 0;

    const QVector<Observacion>& Observaciones() const { return m_observaciones; }

    // The report as a PDF file; false when it could not be written.
    static bool EscribirPdf(const QString& path, const QString& periodo,
                            const QVector<Observacion>& observaciones);

protected:
    void design() override;
    void onLoad() override;

private:
    void revisar();
    void abrir(int row);
    void imprimir();
    void guardarPdf();
    QString periodo();

    QVector<Observacion> m_observaciones;
};
