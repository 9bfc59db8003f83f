#pragma once

#include "AnexoComprobantes.h"

// The annex of the perceptions the taxpayer suffered in the period.
class F978 : public AnexoComprobantes
{
    Q_OBJECT
public:
    F978();
};
