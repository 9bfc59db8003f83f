#pragma once

#include <QString>

// The amount in Spanish words, lower case, as the printed forms state the
// total to pay: "un mil doscientos treinta y cuatro con 50/100". The blanks
// are part of the text the forms print: "cien " and "un mil " keep their
// trailing blank, and a whole amount without cents has no " con". An amount
// of 999999999.99 or more gives "". A negative amount, which no form passes,
// is spelled as its absolute value after "menos ".
QString MontoEnLetras(const double& amount);
