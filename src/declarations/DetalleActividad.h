#pragma once

#include "DetalleDialog.h"

// What tells the line dialogs of the two monthly returns apart.
struct DatosActividad {
    QString tabla;             // detail table, "F976_Detalle"
    QString formulario;        // form name the search dialog gets, "F976"
    QString campoLibre;        // the spare rate box nothing reads
    bool tasaTrasActividad;    // the blank activity is defaulted before the tax is asked
    bool duplicadoSiempre;     // the activity test runs whenever DetalleNuevo is true
    QString mensajeIncorrecto; // refusal of an amount starting with a decimal symbol
    bool fechaNueva;           // FechaRectificativaNueva, when set, keys the line
};

// One line of a monthly return: an activity of the premises, its taxable
// base, its rate and its tax, written to the form's detail table at once.
class DetalleActividad : public DetalleDialog
{
    Q_OBJECT
public:
    // The rates offered, as the forms show them.
    static QStringList Alicuotas();

protected:
    DetalleActividad(const QString& windowName, const DatosActividad& datos);

    void design() override;
    void onLoad() override;

private:
    void CargarAlicuotas();
    void cargaDatos();
    void CalcularTasa();
    void BuscarActividad();
    QString ActividadesDelPadron() const;
    void DescribirActividad();
    void cmdAceptar();
    bool ActividadRepetida(const QString& codigo, const QString& fecha);
    QString FechaLinea() const;

    DatosActividad m_datos;
    bool m_lineaNueva = true;
};
