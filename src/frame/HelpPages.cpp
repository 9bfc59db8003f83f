#include "HelpPages.h"

#include <QHash>

#include "Globals.h"

QString HelpPageFor(const QString& windowName)
{
    // The main window's F1 opens the manual at its index, as it always did.
    static const QHash<QString, QString> pages = {
        {QStringLiteral("Contribuyentes"), QStringLiteral("contribuyentes.html")},
        {QStringLiteral("frmLocalComercial"), QStringLiteral("contribuyentes.html")},
        {QStringLiteral("Busqueda"), QStringLiteral("detalles.html")},
        {QStringLiteral("ContribuyentesDatos"), QStringLiteral("arbol.html")},
        {QStringLiteral("NuevoAnio"), QStringLiteral("periodos.html")},
        {QStringLiteral("NuevoPeriodo"), QStringLiteral("periodos.html")},
        {QStringLiteral("CopiarDDJJ"), QStringLiteral("periodos.html")},
        {QStringLiteral("SeleccionFormulario"), QStringLiteral("seleccion.html")},
        {QStringLiteral("F976"), QStringLiteral("f976.html")},
        {QStringLiteral("F2001"), QStringLiteral("f2001.html")},
        {QStringLiteral("F977"), QStringLiteral("anexos.html#F977")},
        {QStringLiteral("F978"), QStringLiteral("anexos.html#F978")},
        {QStringLiteral("F985"), QStringLiteral("informativos.html#F985")},
        {QStringLiteral("F987"), QStringLiteral("informativos.html#F987")},
        {QStringLiteral("F986"), QStringLiteral("agentes.html#F986")},
        {QStringLiteral("F988"), QStringLiteral("agentes.html#F988")},
        {QStringLiteral("F976_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("F2001_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("F977_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("F978_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("F985_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("F987_Detalle"), QStringLiteral("detalles.html")},
        {QStringLiteral("GenerarDisco"), QStringLiteral("generar.html")},
        {QStringLiteral("frmBackup"), QStringLiteral("copias.html")},
        {QStringLiteral("frmBackupArchivos"), QStringLiteral("copias.html")},
        {QStringLiteral("frmBaseDatos"), QStringLiteral("basedatos.html")},
    };
    return pages.value(windowName, QStringLiteral("index.html"));
}

QString HelpPathFor(const QString& windowName)
{
    return AssetsPath() + QStringLiteral("/help/") + HelpPageFor(windowName);
}
