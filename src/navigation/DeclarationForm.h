#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <memory>

#include "Controller.h"

// What the dispatcher knows of a declaration when it opens its form: the
// identity parsed from the parameter string, the premises and the taxpayer,
// and the stored row it read (with its amounts when the form loads existing
// data). The application keeps the last one of each form; the form gets its
// own copy before it shows.
struct DeclarationHeader {
    QString Formulario; // "F976", ...
    QString Padron;     // 13 characters
    QString Objeto;     // 13 characters
    QString Anio;       // yyyy
    QString Periodo;    // mm
    QString Nuevo;      // as the string holds it: yes, no or "Consultar"
    QString ConDatos;
    QString Rectificativa;
    QString FechaRectificativa;      // dd-mm-yyyy, or "0"
    QString FechaRectificativaNueva; // dd-mm-yyyy, or "0"
    QString ctrl;                    // after the rise of a new rectification
    QString Codigo;                  // the declaration's key, with its letter
    QString CodigoLeido;             // the key the stored row was looked for by
    QString FechaLeida;              // ... and its date
    QString Cuit;                    // 11 digits
    QString RazonSocial;
    QString Domicilio;
    QString Contribuyente; // ApellidoNombre
    QString IdContribuyente;
    bool RowFound = false;
    // The amounts of the stored row by column name, when ConDatos is yes.
    QHash<QString, QString> Montos;

    // The period as the tables hold it: "mm-yyyy".
    QString PeriodoCompleto() const { return Periodo + u'-' + Anio; }
    QString Monto(const QString& column) const;
};

// The one interface of the eight declaration forms towards the dispatcher:
// before showing a form modally it sets Parametros (the parameter string),
// ContribuyenteId and the header record; the form reads them when it loads.
class DeclarationForm : public Controller
{
public:
    using Controller::Controller;

    QString Parametros;
    QString ContribuyenteId;
    DeclarationHeader Encabezado;
};

using DeclarationFormFactory = std::function<std::unique_ptr<DeclarationForm>()>;

// Each form registers how it is made, under its IdFormulario ("F976"); the
// dispatcher creates one instance of each on first use and reuses it.
void RegisterDeclarationForm(const QString& idFormulario, DeclarationFormFactory factory);
void UnregisterDeclarationForm(const QString& idFormulario);
bool IsDeclarationFormRegistered(const QString& idFormulario);
std::unique_ptr<DeclarationForm> CreateDeclarationForm(const QString& idFormulario);
