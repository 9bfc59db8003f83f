#pragma once

#include "DetalleDialog.h"

// What tells the receipt dialogs of the four annexes apart.
struct DatosComprobante {
    QString tabla;            // detail table, "F977_Detalle"
    bool conTipo;             // the receipt type is asked (cboComprobante)
    QString rotuloNumero;     // caption of the receipt number
    QString rotuloImporte;    // caption of the amount
    QString textoDuplicado;   // start of the message of a repeated receipt
    bool descripcionAlCargar; // a stored type is shown by its description from the catalogue
};

// One receipt of an annex: its date, type, number, the other party and the
// amount retained or perceived, written to the annex's detail table at once.
class DetalleComprobante : public DetalleDialog
{
    Q_OBJECT
public:
    // A plain calendar test of a dd-mm-yyyy text.
    static bool Valida(const QString& texto);

protected:
    DetalleComprobante(const QString& windowName, const DatosComprobante& datos);

    void design() override;
    void onLoad() override;

private:
    void TipoComprobante();
    void cargaDatos();
    bool ValidarFecha();
    void ValidarCuit();
    void cmdAceptar();
    bool ComprobanteRepetido(const QString& codigo, const QString& fecha);

    DatosComprobante m_datos;
};
