#pragma once

#include "Controller.h"

// One taxpayer as a tree: options on the taxpayer, its premises, their years
// and months, and in each month the declarations that exist and those that
// may be started. A double click on a node acts on it.
class ContribuyentesDatos : public Controller
{
    Q_OBJECT
public:
    ContribuyentesDatos();
    ~ContribuyentesDatos() override;

    // Set by the opener before showing.
    int IdContribuyente = 0;
    QString NombreContribuyente;
    QString CuitContribuyente;

    // Rebuilds the tree from the tables; the forms call it after a save.
    void ActualizoVista();

    // The taxpayer's window that is open, or nullptr.
    static ContribuyentesDatos* Current();

protected:
    void design() override;
    void onLoad() override;
    void onUnload() override;

private:
    QString id() const { return QString::number(IdContribuyente); }
    Field& tree();
    void nodeClick();
    void showSelected();
    void nuevoAnio();
    void nuevoPeriodo();
    void generar();
    void borrarPadron();
    void desplegar();
    void contraer();
};
