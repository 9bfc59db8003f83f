#pragma once

#include <QString>

// The page of the manual (assets/help) that explains a window, by the
// window's name; the index for a window the manual does not name.
QString HelpPageFor(const QString& windowName);

// The whole path of that page in the installed or built assets.
QString HelpPathFor(const QString& windowName);
