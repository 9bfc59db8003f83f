#pragma once

#include "FormularioDDJJ.h"

// The monthly return of a retention (F986) or perception (F988) agent: one
// screen with no lines. The agent declares what its informative annex lists,
// adds accessories, fines and other items, and gets the amount to deposit.
class DeclaracionAgente : public FormularioDDJJ
{
    Q_OBJECT
public:
    // What tells the two returns apart.
    struct Datos {
        QString anexo;    // the informative annex: "F985"
        QString campo;    // the amount taken from the annex: "txtImpPerF985"
        QString caption;  // its label
        QString columna;  // its column: "ImpPercibidoF985"
        QString mensaje;  // the refusal when it is blank
        bool ceroEsFalso; // a Rectificativa of "0" is read as "Falso"
    };

    // The amount to deposit: the four entered amounts added.
    void ImporteDepositar();
    // Warns when the declared amount differs from the annex's total; it never
    // stops the saving.
    void VerificarAnexoInformativo();

protected:
    DeclaracionAgente(const QString& id, const QString& caption, Datos datos);

    void design() override;
    void onLoad() override;
    void cargarMontos(int tipo) override;
    bool CamposRequeridos(bool generar) override;
    bool VerificarSocio() override;
    bool versionIniciada() override;
    void alSalirMonto(const QString& campo) override;
    QVector<QPair<QString, QString>> columnasEncabezado() override;

private:
    bool sumaEnDepositar(const QString& campo) const;
    bool exigir(const QString& campo, const QString& mensaje);
    void leerMontosGuardados();

    Datos m_datos;
};
