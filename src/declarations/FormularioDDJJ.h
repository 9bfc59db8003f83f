#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include "DefinicionFormulario.h"
#include "EncabezadoFormulario.h"
#include "navigation/DeclarationForm.h"

class Recordset;

// One detail line as it is read: each column's text by the column's name
// ("" for a column the table lacks).
class LineaDetalle
{
public:
    virtual ~LineaDetalle() = default;
    virtual QString texto(const QString& columna) const = 0;
};

// The life that every declaration form shares: its modes from the parameter
// string, the key of the version it edits (Codigo, FechaRectificativa, ctrl),
// the load, the lines through the detail dialog, the order of the checks of
// "Aceptar" and "Generar", the saving of the header row with its registration
// row, and "Cancelar". What differs between the forms is the definition
// handed to the constructor, and a few hooks below.
class FormularioDDJJ : public DeclarationForm
{
    Q_OBJECT
public:
    ~FormularioDDJJ() override;

    // Set by the opener before show(true), besides Parametros, ContribuyenteId
    // and the dispatcher's Encabezado: the premises and taxpayer as the form
    // shows them. Whichever of the two names this declaration's premises is
    // used; with neither, the form reads the tables itself.
    EncabezadoFormulario Cabecera;

    const DefinicionFormulario& definicion() const { return m_def; }

    // Fills the screen and the grid: 1 first load (amounts from the stored
    // row), 2 after a line was added or changed (amounts from the screen), 3
    // after a line was removed (as 2, and never copies a previous version).
    void cargaDatos(int tipo);
    void PropGrid();
    bool HayRegistros();
    void HabilitoGrilla();
    void DeshabilitarDetalle();
    bool ExigirFechaRectificativa();
    void BloquearConsulta();
    void GuardarFormulario(bool generar);
    void GrabarFormulario();
    // The version takes the next free number of the declaration's versions.
    void TomarSiguienteVersion(const QString& declaracion);
    virtual void RecalcularTotales() {}

    // The key of the version in edit, as the parameter string holds it.
    QString codigo() const;
    QString fecha() const;
    QString ctrl() const;
    QString mes() const;
    QString anio() const;

    // "True" and "Verdadero" are yes, whichever locale wrote them.
    static bool EsVerdadero(const QString& text);
    // The blank mask, the empty text and "NO" are "0"; a date keeps its day.
    static QString NormalizarFecha(const QString& text);

protected:
    explicit FormularioDDJJ(DefinicionFormulario definicion);

    void design() override;
    void onLoad() override;
    void onQueryUnload(bool& cancel, int mode) override;
    void onUnload() override;

    // --- hooks -------------------------------------------------------------
    virtual void Limpio() {}
    virtual void Vuelvo() {}
    // The sums of the lines, reset before and fed row by row while loading.
    virtual void iniciarSumas() {}
    virtual void sumarLinea(const LineaDetalle& linea) {}
    // The body's amounts once the lines are read (see cargaDatos).
    virtual void cargarMontos(int tipo) {}
    // Checks of "Aceptar" before the rectification date is checked.
    virtual bool antesDeFecha() { return true; }
    virtual bool CamposRequeridos(bool generar) { return true; }
    // The comparison with the partner form; false stops the saving.
    virtual bool VerificarSocio() { return true; }
    // Whether this version was begun, so that "Generar" need not check the
    // rectification date: it has lines, or a form without lines is stored.
    virtual bool versionIniciada();
    // Whether "Agregar" checks the rectification date of a version without lines.
    virtual bool validaFechaAlAgregar() const { return true; }
    // A typed amount was left, already normalised; by default recalculates.
    virtual void alSalirMonto(const QString& campo);
    // Extra refusal of a typed amount on leaving it (true keeps the focus).
    virtual bool rechazaMonto(const QString& campo) { return false; }
    virtual void despuesDeBorrarLinea() {}
    virtual void despuesDeBorrarTodo() {}
    // The columns of the header row: identity first, then the stored fields.
    virtual QVector<QPair<QString, QString>> columnasEncabezado();
    // Written only when the row is first inserted.
    virtual QVector<QPair<QString, QString>> columnasAlta() { return {}; }
    // A copied line's value of column `indice` of the detail table.
    virtual QString valorCopiado(int indice, const QString& valor) const { return valor; }
    // "Importar": lines from a text file or a spreadsheet.
    void Importar();

    // --- shared pieces for the forms ----------------------------------------
    struct Version {
        QString codigo, fecha, ctrl;
    };
    // The version a new rectification comes from (ctrl one below).
    const Version& versionPrevia() const { return m_previa; }
    // A figure as the forms show it: two decimals, groups of thousands.
    static QString Monto(double value);
    struct RegistroSocio {
        bool existe = false;
        bool rectificativa = false;
        QString fecha;
        QString ctrl;
    };
    // The partner form's latest registration row of this premises and period.
    RegistroSocio UltimoRegistro(const QString& idFormulario);
    // The figure `columna` of the partner's latest row of this period: of the
    // registered rectification when `r` is one, whose " (Rectif. date)" goes
    // to `rect` for the messages.
    QString CifraSocio(const QString& tabla, const QString& columna, const RegistroSocio& r,
                       QString& rect);
    QString param(const QString& key) const;
    void fijarParam(const QString& key, const QString& value);
    QString padron() const;
    QString objeto() const;
    QString periodo() const { return mes() + u'-' + anio(); }
    // "Formulario F976 del período 03-2024 - Padrón ... Objeto ...": what a
    // question before a deletion names.
    QString nombrada() const;
    QString idContribuyente();
    // Codigo rebuilt from the screen, with the letter of the option buttons.
    void ReconstruirCodigo();
    QString texto(const QString& campo) { return field(campo).text(); }
    void fijar(const QString& campo, const QString& text) { field(campo).setText(text); }
    double numero(const QString& campo);
    static QString cero();
    // The detail rows of this version, ordered by CodigoDetalle.
    QString filtroVersion() const;
    QString predicadoRectificativa(bool rectificativa) const;
    QString primerMonto() const;
    void Vaciar(const QString& campo);

private:
    void tomarCabecera();
    void designEncabezado();
    void designCuerpo();
    void designBotones();
    void resolverFechas();
    bool debeCopiar();
    void CopiarDetallePrevio();
    void copiarLineas(Recordset& rs, const QStringList& columnas, int ultima);
    void leerDetalle();
    void llenarEncabezado();
    void abrirDetalle(const QString& id);
    QString cadenaDetalle(const QString& id) const;
    bool existeDetalle(const QString& tabla);
    void borrarRegistro();
    // One statement of the person's, told when the database refuses it.
    bool escribir(const QString& sql);
    void cmdAgregar();
    void cmdModificar();
    void cmdQuitar();
    void cmdQuitarT();
    void cmdAceptar();
    void cmdGenerar();
    void cmdCancelar();
    void optRectificativa(bool rectificativa);
    void salirFechaDDJJ(EventArgs& e);
    void reglaMonto(const QString& campo, EventArgs& e);
    void teclaReescribible(int& key);
    void abrirGenerarDisco();

    DefinicionFormulario m_def;
    Version m_previa;
    // The declaration this workstation holds open for editing (EditLock).
    QString m_bloqueo;
};
