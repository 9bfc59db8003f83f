#pragma once

#include "Controller.h"
#include "frmLocalComercial.h"

// The dialog "Contribuyentes / Locales Comerciales": one taxpayer, its CUIT
// and name, and its commercial premises.
//
// New mode: CUIT and name are typed; premises added before Aceptar are
// stored at once under the typed CUIT, and the taxpayer row comes only at
// Aceptar, so Cancelar and the close box remove what would be left without
// an owner. Edit mode: CUIT and name stay as stored; the dialog edits only the
// premises and the principal mark, whose changes are immediate.
//
// The grid gridLocales holds the data rows only: its header is apart, so the
// first premises is row 0 (the old grid's row 1).
class Contribuyentes : public Controller
{
    Q_OBJECT
public:
    Contribuyentes();

    // Set by the opener before showing; read after it closes.
    QString ConnectionString;
    QString Id;            // idContribuyente to edit; filled after an insert
    bool NewRecord = true; // a new taxpayer, or edit Id
    bool Saved = false;    // ended through Aceptar with the save done
    QString GetNombre;     // the name as it stood when the window closed

    // Shows the stored taxpayer Id: name and CUIT, both then disabled.
    void GetContribuyente();
    bool Validate();
    bool GuardarContribuyente();
    // Fills the grid and the principal premises combo from the current CUIT.
    void cargaGridLocales();
    void formatGridLocales();
    // Removes one premises, or every one of the taxpayer (both texts empty);
    // premises with declarations are kept.
    void BorraLocal(const QString& padron, const QString& objeto);
    bool VerificaExistCuit();

protected:
    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;
    void onUnload() override;

private:
    void designTaxpayer();
    void designPremises();
    QString cuitDigits();
    void cuitNotice();
    bool refuseTakenCuit(const QString& cuit);
    void aceptar();
    // The premises follow a CUIT that changed.
    bool seguirCuit(bool cuitChanged);
    void cancelar();
    void removeOrphans();
    void choosePrincipal();
    void gridClicked();
    void agregar();
    void modificar();
    void quitar();
    void quitarTodo();
    bool hasCurrentPremises();
    void focusOnTab(int tab, const QString& name);

    frmLocalComercial m_local;
    QString m_cuitCargado; // the CUIT as loaded; empty for a new taxpayer
    QString m_cuitActual;  // the CUIT at Aceptar
};
