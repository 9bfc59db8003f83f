#pragma once

#include <QStringList>

#include "Controller.h"

// What every detail dialog of a form offers its form: the form sets the
// parameter string, whether a line is being added, and the last row of its
// grid (for F3); it reads back the string and whether a line was written.
class DetalleDialog : public Controller
{
    Q_OBJECT
public:
    QString Parametros;     // in and out
    bool EsAgrega = false;  // in: the dialog adds a line
    QStringList Ultimo;     // in: the cells of the grid's last row, from column 0
    bool Aceptado = false;  // out: the line was written

protected:
    explicit DetalleDialog(const QString& windowName) : Controller(windowName) {}
};
