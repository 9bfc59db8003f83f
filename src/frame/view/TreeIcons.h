#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

// The images of the declaration tree by their keys: "Carpeta", "Archivo",
// "Blank", "Modificar", "Eliminar".
QIcon TreeIcon(const QString& key);

// The emblem the main window and the splash show.
QPixmap AppPicture(int width, int height);
