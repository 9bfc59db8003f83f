#include "ImportRule.h"

namespace {

const QString kFechaArchivo =
    QStringLiteral("Formato de fecha incorrecto en Archivo. El mismo debe ser DD-MM-YYYY.");

const QStringList kColumnasActividad = {
    QStringLiteral("Código de Actividad"),
    QStringLiteral("Descripción Actividad"),
    QStringLiteral("Base Imponible"),
    QStringLiteral("Alícuota"),
    QStringLiteral("Impuesto"),
};

const QStringList kColumnasSinTipo = {
    QStringLiteral("Fecha"),        QStringLiteral("Número de Comprobante"),
    QStringLiteral("Denominación"), QStringLiteral("CUIT"),
    QStringLiteral("Padrón"),       QStringLiteral("Importe"),
};

const QStringList kColumnasConTipo = {
    QStringLiteral("Fecha"),
    QStringLiteral("Tipo de Comprobante"),
    QStringLiteral("Número de Comprobante"),
    QStringLiteral("Denominación"),
    QStringLiteral("CUIT"),
    QStringLiteral("Padrón"),
    QStringLiteral("Importe"),
};

// The spreadsheet rule of F987 was written from that of F978 and kept its
// table: such a sheet lands in F978_Detalle under the F987 declaration's key.
// The program has always done so, and the lines already filed that way rely
// on it.
const ImportRule kRules[] = {
    {QStringLiteral("F976"), ImportFamily::Actividades, QStringLiteral("F976_Detalle"),
     QStringLiteral("F976_Detalle"), false, kColumnasActividad, QString()},
    {QStringLiteral("F2001"), ImportFamily::Actividades, QStringLiteral("F2001_Detalle"),
     QStringLiteral("F2001_Detalle"), false, kColumnasActividad, QString()},
    {QStringLiteral("F977"), ImportFamily::Anexos, QStringLiteral("F977_Detalle"),
     QStringLiteral("F977_Detalle"), false, kColumnasSinTipo, kFechaArchivo},
    {QStringLiteral("F978"), ImportFamily::Anexos, QStringLiteral("F978_Detalle"),
     QStringLiteral("F978_Detalle"), true, kColumnasConTipo, kFechaArchivo},
    {QStringLiteral("F985"), ImportFamily::Agentes, QStringLiteral("F985_Detalle"),
     QStringLiteral("F985_Detalle"), false, kColumnasSinTipo, kFechaArchivo},
    {QStringLiteral("F987"), ImportFamily::Agentes, QStringLiteral("F987_Detalle"),
     QStringLiteral("F978_Detalle"), true, kColumnasConTipo,
     QStringLiteral("Formato de fecha incorrecto en Archivo")},
};

} // namespace

const ImportRule* ImportRule::Find(const QString& formulario)
{
    for (const ImportRule& rule : kRules)
        if (rule.formulario.compare(formulario.trimmed(), Qt::CaseInsensitive) == 0)
            return &rule;
    return nullptr;
}
