#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "Db.h"
#include "declarations/DetalleDialog.h"
#include "declarations/FormularioDDJJ.h"
#include "declarations/FormulariosDDJJ.h"

// One declaration of premises 1234, objeto 1, March 2024, original, as the
// forms hand it to their detail dialogs.
namespace DetalleTest {

inline const QString kPadron = QStringLiteral("0000000001234");
inline const QString kObjeto = QStringLiteral("0000000000001");
inline const QString kCodigo = kPadron + QStringLiteral("032024") + kObjeto + QStringLiteral("O");

// The string of a form's "Agregar"; with `id`, the string of "Modificar".
inline QString Parametros(const QString& formulario, const QString& id = {})
{
    QString s = QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
                QStringLiteral(";Periodo=03-2024;");
    if (!id.isEmpty())
        s += QStringLiteral("Id=") + id + u';';
    return s + QStringLiteral("Rectificativa=False;Codigo=") + kCodigo +
           QStringLiteral(";Formulario=") + formulario +
           QStringLiteral(";FechaRectificativa=0;Codigo=") + kCodigo +
           QStringLiteral(";DetalleNuevo=Verdadero;ctrl=0;");
}

// The detail dialog of a form ("F976") as the form makes it, not yet loaded.
inline std::unique_ptr<DetalleDialog> Dialogo(const QString& formulario)
{
    RegistrarFormularios();
    const std::unique_ptr<DeclarationForm> form = CreateDeclarationForm(formulario);
    return static_cast<FormularioDDJJ&>(*form).definicion().crearDetalle();
}

// The dialog as the form's "Agregar" opens it (no `id`) or "Modificar", with
// the line before it to recall.
inline std::unique_ptr<DetalleDialog> Abrir(const QString& formulario, const QString& id = {},
                                            const QStringList& ultimo = {})
{
    auto d = Dialogo(formulario);
    d->Parametros = Parametros(formulario, id);
    d->EsAgrega = id.isEmpty();
    d->Ultimo = ultimo;
    d->load();
    return d;
}

// The values of one column of the version's lines, by line number.
inline QStringList Columna(const QString& tabla, const QString& columna)
{
    return Db::column(QStringLiteral("SELECT %1 FROM %2 WHERE Codigo = '%3' ORDER BY CodigoDetalle")
                          .arg(columna, tabla, kCodigo));
}

} // namespace DetalleTest
