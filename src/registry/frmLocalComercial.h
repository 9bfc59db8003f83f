#pragma once

#include <array>

#include "Controller.h"

class Contribuyentes;

// The dialog that enters or edits one commercial premises of a taxpayer: the
// padrón and objeto pair, its classification, names, regime and agent flags,
// a principal and up to five secondary activities, the address and who signs.
//
// The opener sets, every time before showing it (the instance is reused and
// keeps the previous opening's values):
//   Cuit       the taxpayer's CUIT, 11 digits without dashes
//   Padron     the padrón of the premises to edit (13 digits)
//   Objeto     the objeto of the premises to edit (13 digits)
//   Modificar  true to edit that premises, false for a new one
//   Opener     the taxpayer dialog to refresh after a save
// For an edit the opener calls cargaDatos() before showing the window.
class frmLocalComercial : public Controller
{
    Q_OBJECT
public:
    frmLocalComercial();

    QString Cuit;
    QString Padron;
    QString Objeto;
    bool Modificar = false;
    Contribuyentes* Opener = nullptr;

    // Loads the stored premises Cuit / Padron / Objeto into the screen.
    void cargaDatos();
    // Write the screen as a new premises, or over the one being edited.
    void insertarDatos();
    void actualizarDatos();
    // True, with the person told, when the padrón / objeto pair is taken.
    bool VerificaPadron();
    // The reason the screen cannot be stored, or "" when it can.
    QString ValidarLocal();

    // Padrón and objeto are always thirteen digits, zeros in front.
    static QString PadTo13(const QString& text);

protected:
    void design() override;
    void onLoad() override;

private:
    // One activity line of the screen: the code box, the "..." button, the
    // description box; and where the focus goes after a lookup by code.
    struct Activity {
        QString code, button, description;
        bool focusAceptarWhenFound = false;
    };
    static const std::array<Activity, 6>& activities();

    void designIdentification();
    void designRegime();
    void designActivities();
    void designAddress();
    void regimeClicked(const QString& clicked, const QString& other);
    void lookupByCode(const Activity& activity);
    void lookupByButton(int index);
    QString searchActivity(QString* code);
    void refreshSnapshot();
    bool snapshotHasRepeat() const;
    void aceptar();
    void fillDefaults();
    bool confirmBlank(const QString& field, const QString& question, const QString& refusal,
                      QString* answer);
    QString regimen();
    void setRegimen(const QString& value);
    // The screen gathered into the columns of tPadronesComerciales, trimmed.
    QStringList premisesValues();
    QStringList activityValues();
    void insertActivities();
    void refreshOpener();

    std::array<QString, 6> m_snapshot; // the six codes, for the repeat test
};
