#pragma once

#include <QByteArray>
#include <QString>

// The text in Windows-1252, the code page of the submission file and of the
// digests: one byte for each character, Latin-1 where the two agree, the
// typographic signs of 0x80 to 0x9F (euro, dashes, quotes...) by table, and
// "?" for a character the code page lacks.
QByteArray ToWindows1252(const QString& text);
