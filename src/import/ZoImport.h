#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class Controller;
class Field;

// Brings detail lines of a declaration in from a text file or a spreadsheet.
// A form sets the properties, then calls Importar with its parameter string:
// the file is asked for (unless Path is set), told apart by its name, checked
// and handed to the rule of the form. Rows go straight into the detail table;
// lines that passed stay when a later line stops the import.
class ZoImport
{
public:
    // Progress control of the calling form, or null.
    Field* ProgressBar = nullptr;
    // "F976", "F2001", "F977", "F978", "F985" or "F987".
    QString IdFormulario;
    // File to import; empty means ask the person.
    QString Path;
    // Period of the declaration; 0 takes it from the parameter string.
    int Mes = 0;
    int Anio = 0;
    // The calling form, whose command buttons and grid are disabled while the
    // import runs and given back their state after; or null.
    Controller* Formulario = nullptr;

    // Runs the import; false when no file was taken, the rule stopped or the
    // file could not be read. `controls`: disable the calling form meanwhile.
    bool Importar(QString& parametros, bool controls);

    // The import as a form runs it from its "Importar" button: the file is
    // asked for, the form's buttons and grid are off meanwhile, and its
    // progress control shows the lines read. The form's name and period are
    // those of its parameter string (the window's name when it has none).
    static bool ImportarDesde(Controller& form, QString& parametros, Field* progress);

    // The text without its leading "0" characters.
    static QString DeleteZeros(const QString& text);
    // Whether "dd-mm-yyyy" is a valid day of the period or before it.
    static bool FechaPeriodo(const QString& fecha, int mes, int anio);
    // Whether the text is a day written DD-MM-YYYY.
    static bool EsFecha(const QString& fecha);
    // Eleven digits once the "-" are gone, with a valid check digit.
    static bool EsCuitValido(const QString& cuit);

    // The checks of a sheet's columns: their count and, with a header row
    // (`titulos`, the first row), their headings (with accents or without).
    // Shows why and gives false.
    static bool VerificarColumnas(const QStringList& titulos, int columnCount, bool encabezado,
                                  const QStringList& columnas);

    // The folder of the last file chosen, shared by every import.
    static QString CarpetaAnterior();
    // The stop flag, cleared by Importar on entry and read at every line.
    static void Detener() { s_detener = true; }
    static bool Detenido() { return s_detener; }

    // The filter of the file dialog.
    static QString Filtro();
    // Whether the sheet is an Excel workbook (.xls, .xlsx) rather than an
    // OpenDocument one (.ods), which follows the same rules.
    static bool EsExcel(const QString& path);
    // The title of the messages of a sheet's import: "Importar archivo de
    // Excel", or "Importar hoja de cálculo" for an OpenDocument sheet.
    static QString TituloHoja(const QString& path);

private:
    bool elegirArchivo(QString& path);

    static inline bool s_detener = false;
};
