#pragma once

#include "Controller.h"

// The single top window "Sistema Morvel de Declaraciones": the menu, the list
// of taxpayers, backups and help.
class Principal : public Controller
{
    Q_OBJECT
public:
    Principal();

    QString ConnectionString;

    // Rebuilds the list of taxpayers under "Contribuyentes / Padrones
    // Comerciales".
    void FillMenu();

protected:
    void design() override;
    void onLoad() override;
    void onUnload() override;
    void onFormKeyDown(EventArgs& args) override;

private:
    void designMenu();
    void openListedTaxpayer(int index);
    void openNewTaxpayer();
    void openTaxpayerData(int id, const QString& name, const QString& cuit);
    void openManual();
    void showAbout();
};

// The one main window of the application.
Principal& gPrincipal();

// The version as the main window shows it: major, ".", minor, two blanks,
// revision.
QString VersionText();
