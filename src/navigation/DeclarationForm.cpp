#include "DeclarationForm.h"

namespace {

QHash<QString, DeclarationFormFactory>& factories()
{
    static QHash<QString, DeclarationFormFactory> registry;
    return registry;
}

} // namespace

QString DeclarationHeader::Monto(const QString& column) const
{
    for (auto it = Montos.cbegin(); it != Montos.cend(); ++it)
        if (it.key().compare(column, Qt::CaseInsensitive) == 0)
            return it.value();
    return {};
}

void RegisterDeclarationForm(const QString& idFormulario, DeclarationFormFactory factory)
{
    factories().insert(idFormulario.toUpper(), std::move(factory));
}

void UnregisterDeclarationForm(const QString& idFormulario)
{
    factories().remove(idFormulario.toUpper());
}

bool IsDeclarationFormRegistered(const QString& idFormulario)
{
    return factories().contains(idFormulario.toUpper());
}

std::unique_ptr<DeclarationForm> CreateDeclarationForm(const QString& idFormulario)
{
    const auto it = factories().constFind(idFormulario.toUpper());
    if (it == factories().cend() || !*it)
        return nullptr;
    return (*it)();
}
