#pragma once

#include "Controller.h"

// "Generación de Disco": the dialog by which declarations leave the system as
// a submission file and printed copies.
class GenerarDisco : public Controller
{
    Q_OBJECT
public:
    GenerarDisco();

    // One parameter string, or with TotalPeriodo several joined by "#".
    QString Parametros;
    bool TotalPeriodo = false;

    // "Enero" to "Diciembre" for "01" to "12"; "" for any other code.
    static QString NombreMes(const QString& code);
    // The submission file's name for a declaration in `destino`:
    // {destino}/{form number}{mm}{yy}.DJ ("09760110.DJ", "20010110.DJ").
    static QString NombreArchivo(const QString& destino, const QString& parameters);
    // "Generación del Formulario F976", or for a whole month "Generación del
    // Período 03-2024".
    QString Titulo() const;
    // The first mounted removable medium (under /media or /run/media), else
    // the home folder: where a floppy used to be the default.
    static QString DestinoPorDefecto();

    bool GenerarArchivo(const QString& parameters);
    bool GenerarFormulario(const QString& parameters);
    bool GenerarPeriodo();

protected:
    void design() override;
    void onLoad() override;

private:
    void Aceptar();
    // The copies asked for; -1 when the text is not a whole number.
    int CantidadImpresiones();
    // "La generación se realizó correctamente." with the files written, their
    // folder, and the copies that were not printed and why.
    QString MensajeFinal() const;

    // What the run made: the files written, and per form the copies that
    // did not reach the printer.
    QStringList m_archivos;
    QStringList m_sinImprimir;
};
