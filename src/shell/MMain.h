#pragma once

#include <QString>

#include "Globals.h"

// The start of a run: checks the regional settings, brings the database to
// the current level under the splash, runs the scheduled backup and shows the
// main window. False when the program must end at once.
bool Main(const QString& dataFolder);
