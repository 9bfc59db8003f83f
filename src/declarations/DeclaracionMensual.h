#pragma once

#include "FormularioDDJJ.h"

// What the two monthly returns (F976, F2001) share beyond every form: activity
// lines summed into the levy, the rate that never falls below it, the amounts
// of the stored row, the reset of an empty return, the question on a negative
// total, the required fields, and the comparison with the annexes F977, F978.
class DeclaracionMensual : public FormularioDDJJ
{
    Q_OBJECT
public:
    // A field that must not be blank when saving: with no message it is set
    // to zero instead.
    struct Requerido {
        QString campo;
        QString mensaje;        // "Aceptar"
        QString mensajeGenerar; // "Generar"
    };

    // What the two returns share as data: their activity lines and grid.
    static DefinicionFormulario DefinicionMensual(const QString& id, const QString& caption);

    bool totalNegativo() const { return m_negativo; }
    // The warning when the declared credits differ from the annexes; it never
    // stops the saving.
    bool VerificarAnexos();

protected:
    DeclaracionMensual(DefinicionFormulario definicion, QString campoTasa,
                       QVector<Requerido> requeridos);

    void Limpio() override;
    void Vuelvo() override;
    void iniciarSumas() override;
    void sumarLinea(const LineaDetalle& linea) override;
    void cargarMontos(int tipo) override;
    bool antesDeFecha() override;
    bool CamposRequeridos(bool generar) override;
    bool VerificarSocio() override { return VerificarAnexos(); }

    void leerMontosGuardados();
    // The grid's first row decides between Vuelvo and Limpio.
    void VueloOLimpio();
    void marcarNegativo(bool on) { m_negativo = on; }

    const QString m_campoTasa; // the rate or minimum: never below the levy

private:
    QVector<Requerido> m_requeridos;
    double m_sumaBase = 0;
    double m_sumaImpuesto = 0;
    bool m_negativo = false;
};
