#pragma once

#include "AnexoComprobantes.h"

// The informative annex of a perception agent: each receipt on which it
// perceived, whose total must agree with its return F988.
class F987 : public AnexoComprobantes
{
    Q_OBJECT
public:
    F987();
};
