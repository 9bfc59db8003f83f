#include "VentanaEscritorio.h"

void VentanaEscritorio::abrirFilas(const QString& grid, std::function<void(int row)> abrir)
{
    on(grid, Ev::DblClick, [abrir](EventArgs& e) { abrir(e.index); });
    on(grid, Ev::KeyDown, [this, grid, abrir](EventArgs& e) {
        if (e.key != KeyCode::Return)
            return;
        e.key = 0;
        abrir(field(grid).currentRow());
    });
}
