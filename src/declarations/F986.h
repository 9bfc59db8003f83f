#pragma once

#include "DeclaracionAgente.h"

// The monthly return of a retention agent.
class F986 : public DeclaracionAgente
{
    Q_OBJECT
public:
    F986();
};
