#pragma once

#include "Controller.h"

// "Búsqueda": the pick-list of economic activities. It lists the rows of a
// query with the code behind each entry, narrows the list as the person
// types, and hands back a code and a description.
//
// The opener sets SelectCommandText (first column the code, second the name)
// and, for the activities of one premises, NombreFormulario; after the
// window closes it reads Id and Description. An empty Description means that
// nothing was chosen.
class Busqueda : public Controller
{
    Q_OBJECT
public:
    Busqueda();

    QString SelectCommandText;
    QString ConnectionString;
    // "F976", "F2001" or "F978": SelectCommandText reads a row of
    // Actividades_x_padrones and the list holds that premises' activities.
    QString NombreFormulario;
    QString Id;
    QString Description;

    // The statement the list is rebuilt from as the person types.
    static QString ActivitiesSql(const QString& typed);

protected:
    void design() override;
    void onLoad() override;
    void onUnload() override;

private:
    bool isPremisesMode() const;
    void fillPremisesActivities();
    void narrow();
    void showCode();
    void listKeyDown(EventArgs& e);

    int m_lastKey = 0; // the last key pressed in the list
};
