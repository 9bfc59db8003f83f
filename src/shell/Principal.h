#pragma once

#include "Controller.h"
#include "desk/BuscadorContribuyentes.h"

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
    // Reads the taxpayers of the finder again and filters them by what the
    // search box holds.
    void FillBuscador();

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
    void designBuscador();
    void fillMenuList();
    void filtrar();
    void openFound(int row);
    void openDesk(const QString& window);

    BuscadorContribuyentes m_buscador;
    QVector<int> m_encontrados;
};

// The one main window of the application.
Principal& gPrincipal();

// The version as the main window shows it: major, ".", minor, two blanks,
// revision.
QString VersionText();
