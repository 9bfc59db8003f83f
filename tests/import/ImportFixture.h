#pragma once

#include <QString>
#include <QStringList>

#include "Db.h"
#include "Seed.h"
#include "TestSupport.h"
#include "import/ZoImport.h"

// One premises (CUIT 20-12345678-6) and its declarations of March 2024, the
// files that import into them, and the rows they leave.
namespace ix {

inline const QString kPadron = QStringLiteral("0000000012345");
inline const QString kObjeto = QStringLiteral("0000000000007");
inline const QString kCuit = QStringLiteral("20123456786");

inline QString codigo(bool rect = false)
{
    return kPadron + QStringLiteral("032024") + kObjeto + (rect ? u'R' : u'O');
}

inline void premises()
{
    Seed::AddPremises("12345", "7", {"razon_social=ALMACÉN", "percepcion=1", "retencion=1"});
}

// The parameter string of a form in edit, as a form hands it to the import.
inline QString parametros(const QString& form, bool rect = false,
                          const QString& fecha = QStringLiteral("0"))
{
    return QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=03;Formulario=") + form +
           QStringLiteral(";Rectificativa=") + (rect ? "Verdadero" : "Falso") +
           QStringLiteral(";FechaRectificativa=") + fecha +
           QStringLiteral(";ctrl=0;idContribuyente=1;Codigo=") + codigo(rect) + u';';
}

inline bool importar(const QString& form, const QString& path, bool rect = false,
                     Field* progress = nullptr)
{
    ZoImport imp;
    imp.IdFormulario = form;
    imp.Path = path;
    imp.ProgressBar = progress;
    QString p = parametros(form, rect, rect ? QStringLiteral("10-04-2024") : QStringLiteral("0"));
    return imp.Importar(p, true);
}

// The rows of a detail table, cells joined by "|", in the order of their
// numbers; `columns` picks the cells.
inline QStringList rows(const QString& table, const QString& columns)
{
    return Db::rows(QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM ") + table +
                    QStringLiteral(" ORDER BY CodigoDetalle, Id"));
}

inline QString data(const QString& name)
{
    return QStringLiteral(MORVEL_IMPORT_DATA "/") + name;
}

} // namespace ix
