#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>
#include <memory>

class DetalleDialog;

// How a field of a form's body behaves and where it is stored.
enum class TipoCampo {
    Ingresado,    // an amount the person types
    Derivado,     // an amount the recalculation writes
    Reescribible, // an amount the recalculation writes and the person may retype
    Periodo,      // a period "mm-yyyy" in a masked box
};

struct CampoFormulario {
    QString campo;   // field name
    QString caption; // the label beside it
    QString columna; // column of the form's table; empty when not stored
    TipoCampo tipo = TipoCampo::Ingresado;
    bool visible = true; // a stored field the paper form does not show
};

// What one declaration form is, as data: the shared life of a form reads its
// tables, texts and fields from here, so that two forms that differ only in
// these share every line of code.
struct DefinicionFormulario {
    QString id; // "F976": the form's IdFormulario
    QString caption;
    QString tabla;        // the header row's table
    QString tablaDetalle; // the lines' table; empty for a form without lines
    // The table whose lines tell whether this declaration has begun, when
    // "Agregar" decides to check the rectification date.
    QString tablaPruebaAgregar;
    std::function<std::unique_ptr<DetalleDialog>()> crearDetalle;
    QStringList titulosGrilla;  // "Codigo Detalle|..." split
    QStringList columnasGrilla; // the line's columns shown, in the titles' order
    QVector<int> columnasDerecha;
    int columnasUltimo = 0; // cells of the last row handed to the dialog for F3
    int limiteFilas = 0;    // 0: no limit
    QString mensajeLimite;
    QString tituloMonto; // the amount rule's refusal
    QString mensajeMonto;
    QVector<CampoFormulario> campos; // the body, in tab order
    // The agents' returns have no Codigo: their row is found by padrón,
    // objeto, period, rectification and ctrl.
    bool tieneCodigo = true;
    // "Aceptar" asks for the date of a rectification before anything else.
    bool exigeFechaAlAceptar = true;
};

// A form whose table bears its id and, when it has lines, whose lines' table
// is named after it; whether it has begun is asked of its own lines.
inline DefinicionFormulario DefinicionDe(const QString& id, const QString& caption, bool conLineas)
{
    DefinicionFormulario d;
    d.id = id;
    d.caption = caption;
    d.tabla = id;
    if (conLineas)
        d.tablaDetalle = id + QStringLiteral("_Detalle");
    d.tablaPruebaAgregar = d.tablaDetalle;
    return d;
}
