#pragma once

#include <QStringList>
#include <map>
#include <vector>

#include "Controller.h"

// What every detail dialog of a form offers its form: the form sets the
// parameter string, whether a line is being added, and the last row of its
// grid (for F3); it reads back the string and whether a line was written.
class DetalleDialog : public Controller
{
    Q_OBJECT
public:
    QString Parametros;    // in and out
    bool EsAgrega = false; // in: the dialog adds a line
    QStringList Ultimo;    // in: the cells of the grid's last row, from column 0
    bool Aceptado = false; // out: the line was written

    // Codigo of the declaration the parameter string names: padrón, period
    // without its "-", objeto, and "O" for an original or "R".
    static QString CodigoDeclaracion(const QString& parametros);

protected:
    explicit DetalleDialog(const QString& windowName) : Controller(windowName) {}

    // Several concerns listen to the same event of a field (the F3 label, the
    // selection of an amount, its rule on leaving): each handler added here
    // runs in turn. Call clearHandlers() at the start of design().
    void handle(const QString& fieldName, Ev ev, Handler handler);
    void clearHandlers() { m_chains.clear(); }

    // F3 recall: while the field has focus on a new line the label lblF3 is
    // shown, and F3 copies into the field the cell of the grid's last row at
    // `column`, then moves on when the cell is not blank.
    void addRecall(const QString& fieldName, int column);

    // The rule of a typed amount on leaving: a text starting with a decimal
    // symbol is refused with `message` (the field shows zero); otherwise it is
    // rendered with two decimals. False keeps the focus in the field.
    bool AmountRule(Field& field, const QString& message, const QString& title);

    // Shows `text` in a combo: its item when the list has it, else as typed.
    static void SetComboText(Field& combo, QString text);

    // Refuses the line when `field` is blank: message, focus there.
    bool Requerido(const QString& fieldName, bool blank, const QString& message);

    // The entries of the parameter string the dialogs key their rows by.
    QString Parametro(const QString& key) const;
    // "0" for a rectification date that was left as the blank mask.
    static QString FechaClave(const QString& fecha);
    // The Id entry: the number of the line in edit, blank for a new line.
    QString IdDetalle() const { return Parametro(QStringLiteral("Id")).trimmed(); }
    // Sets the Codigo entry, adding it when the string has none.
    void SetCodigo(const QString& codigo);
    // Writes one line: the old line of that number goes and the new one is
    // inserted, so an edit keeps the line's number. A new line (no number)
    // gets the next number of its version, "0001" for the first, in the same
    // step as its insert, so that two workstations never number two lines
    // alike. False, with the person told why, when the database refused it:
    // the dialog stays open.
    bool GrabarLinea(const QString& tabla, const QString& codigo, const QString& codigoDetalle,
                     const QString& fecha, const QStringList& columnas, const QStringList& valores);
    // The line was written: the form reads Aceptado once the dialog is gone.
    void Aceptar();

    QString m_tituloMensajes = QStringLiteral("Mensaje");

private:
    std::map<std::pair<QString, Ev>, std::vector<Handler>> m_chains;
};
