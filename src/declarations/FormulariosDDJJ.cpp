#include "FormulariosDDJJ.h"

#include "F2001.h"
#include "F976.h"
#include "F977.h"
#include "F978.h"
#include "F985.h"
#include "F986.h"
#include "F987.h"
#include "F988.h"

namespace {

template <class Form> void registrar(const char* id)
{
    RegisterDeclarationForm(QString::fromLatin1(id), [] { return std::make_unique<Form>(); });
}

} // namespace

void RegistrarFormularios()
{
    registrar<F976>("F976");
    registrar<F2001>("F2001");
    registrar<F977>("F977");
    registrar<F978>("F978");
    registrar<F985>("F985");
    registrar<F986>("F986");
    registrar<F987>("F987");
    registrar<F988>("F988");
}
