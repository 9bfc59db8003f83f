#pragma once

#include "AnexoComprobantes.h"

// The annex of the retentions the taxpayer suffered in the period.
class F977 : public AnexoComprobantes
{
    Q_OBJECT
public:
    F977();
};
