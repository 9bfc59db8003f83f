#pragma once

#include <QHash>
#include <QString>

class Recordset;

// What the opener of a form knows of the declaration before the form shows:
// the premises, the taxpayer and, for a declaration that exists, the amounts of
// its stored row by column name. The opener fills it and hands it over with
// `Parametros` and `ContribuyenteId`; a form left without it reads the same
// from the tables itself.
struct EncabezadoFormulario {
    QString Padron;  // 13 characters
    QString Objeto;  // 13 characters
    QString Periodo; // mm-yyyy
    QString RazonSocial;
    QString Domicilio;              // calle_numero - localidad_departamento - cp
    QString Contribuyente;          // ApellidoNombre
    QString Cuit;                   // 11 digits
    QHash<QString, QString> Montos; // stored row: column name (lower case) to text

    // Takes every column of the current row of `rs` into Montos.
    void LeerMontos(const Recordset& rs);
    QString Monto(const QString& columna) const { return Montos.value(columna.toLower()); }
    bool vacio() const { return Padron.isEmpty(); }

    // The premises and taxpayer of `padron` and `objeto`, read from the tables
    // as the opener reads them.
    static EncabezadoFormulario Leer(const QString& padron, const QString& objeto,
                                     const QString& periodo);
};
