#pragma once

#include <functional>

#include "Controller.h"

// A window of the desk whose grid lines each open something (a declaration, a
// taxpayer's calendar): a double click or Enter on a line opens it.
class VentanaEscritorio : public Controller
{
    Q_OBJECT
public:
    using Controller::Controller;

protected:
    void abrirFilas(const QString& grid, std::function<void(int row)> abrir);
};
