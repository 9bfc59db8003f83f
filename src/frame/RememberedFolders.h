#pragma once

#include <QString>

// The last folder the person chose for one purpose ("Generar", "Importar"),
// kept between runs in the settings; the home folder while none was chosen
// or when the one kept no longer exists.
QString RememberedFolder(const QString& purpose);
// Keeps the folder (or the folder of the file) for that purpose.
void RememberFolder(const QString& purpose, const QString& folderOrFile);
