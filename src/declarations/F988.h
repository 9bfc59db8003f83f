#pragma once

#include "DeclaracionAgente.h"

// The monthly return of a perception agent.
class F988 : public DeclaracionAgente
{
    Q_OBJECT
public:
    F988();
};
