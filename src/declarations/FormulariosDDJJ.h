#pragma once

// Makes the declaration forms known to the dispatcher by their IdFormulario;
// the program calls it once at start-up.
void RegistrarFormularios();
