#pragma once

#include "AnexoComprobantes.h"

// The informative annex of a retention agent: each constancy it issued when
// withholding, whose total must agree with its return F986.
class F985 : public AnexoComprobantes
{
    Q_OBJECT
public:
    F985();
};
