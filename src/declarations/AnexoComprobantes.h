#pragma once

#include "FormularioDDJJ.h"

// An annex that lists receipt by receipt what was withheld or perceived, and
// whose total must agree with the figure of its partner form: F977 and F978
// of the taxpayer, F985 and F987 of an agent. They differ only in data.
class AnexoComprobantes : public FormularioDDJJ
{
    Q_OBJECT
public:
    struct Socio {
        // The partner when it does not follow from the premises' regime.
        QString fijo;
        // Its column that the annex's total must match.
        QString columna;
    };

    // Compares the total with the partner's figure; within the tolerance an
    // adjustment line makes them agree. False stops the saving.
    bool VerificarDeclarado();
    // Numbers the lines 0001 upward again, the adjustment line included.
    void RenumerarDetalle();

protected:
    AnexoComprobantes(DefinicionFormulario definicion, Socio socio);

    void iniciarSumas() override { m_total = 0; }
    void sumarLinea(const LineaDetalle& linea) override;
    void cargarMontos(int tipo) override;
    bool validaFechaAlAgregar() const override;
    bool CamposRequeridos(bool generar) override;
    bool VerificarSocio() override { return VerificarDeclarado(); }
    void despuesDeBorrarLinea() override;
    QVector<QPair<QString, QString>> columnasEncabezado() override;
    QString valorCopiado(int indice, const QString& valor) const override;

private:
    // The partner form of this premises: "" when none is compared.
    QString socio();

    Socio m_socio;
    double m_total = 0;
};
