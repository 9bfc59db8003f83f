#include "EncabezadoFormulario.h"

#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "Util.h"
#include "ZoAccess.h"

void EncabezadoFormulario::LeerMontos(const Recordset& rs)
{
    for (int i = 0; i < rs.FieldCount(); ++i)
        Montos.insert(rs.FieldName(i).toLower(), rs.Text(i));
}

EncabezadoFormulario EncabezadoFormulario::Leer(const QString& padron, const QString& objeto,
                                                const QString& periodo)
{
    EncabezadoFormulario e;
    e.Padron = padron;
    e.Objeto = objeto;
    e.Periodo = periodo;
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM tPadronesComerciales WHERE Padron = '") + Sq(padron) +
        QStringLiteral("' and objeto = '") + Sq(objeto) + QStringLiteral("' "));
    if (!rs || rs->EOF_())
        return e;
    e.Cuit = rs->Text(QStringLiteral("cuit"));
    e.RazonSocial = rs->Text(QStringLiteral("razon_social"));
    e.Domicilio = rs->Text(QStringLiteral("calle_numero")) + QStringLiteral(" - ") +
                  rs->Text(QStringLiteral("localidad_departamento")) + QStringLiteral(" - ") +
                  rs->Text(QStringLiteral("cp"));
    e.Contribuyente = gAccess().GetString(
        QStringLiteral("SELECT ApellidoNombre FROM Contribuyentes WHERE Cuit = '") +
        Sq(FormatCuit(e.Cuit)) + u'\'');
    return e;
}
