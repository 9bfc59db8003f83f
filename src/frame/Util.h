#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

class Field;

// The general routines that many screens rely on: amounts as text, CUIT,
// key filters, lists and grids, and a few questions about declarations.
// Amounts are read and written with the symbols of the application's regional
// settings, never with the machine's locale.

// --- Text and numbers -----------------------------------------------------

// "" for Null, otherwise the value's text.
QString NullToText(const QVariant& value);

// "0,00" for the empty text, otherwise the text as it is.
QString ZeroIfEmpty(const QString& text);

// The figure with two decimals and groups of thousands ("1.234,50"); a text
// that is not a figure comes back unchanged.
QString FormatAmount(const QString& text);

// The figure of the text; 0 when it is not one.
double TextToDouble(const QString& text);

// The dotted form of an amount for SQL arithmetic and the submission file
// ("1.234,50" gives "1234.50"); a text that is not a figure is unchanged.
QString AmountToSqlText(const QString& text);

// An amount written with a "." decimal (import files) in the regional form
// with two decimals and no groups ("1234.5" gives "1234,50").
QString NormalizeAmount(const QString& text);

// Only the digits of the text, in order.
QString DigitsOnly(const QString& text);

// The decimal symbol of the regional settings: the second character of 0.5.
QString GetDecimalSymbol();

// Twelve upper-case hexadecimal digits of a fresh GUID: its last group.
QString NewShortGuid();

// A day written "dd-mm-yyyy" or "dd/mm/yyyy", perhaps followed by a time; an
// invalid QDate when it is not a calendar day. The day, month and year then
// stand where the date checks read them by position.
QDate TextToDate(const QString& text);

// --- CUIT -----------------------------------------------------------------

// "20123456789" gives "20-12345678-9".
QString FormatCuit(const QString& text);

// Removes every "-" from `text` (the caller's variable), then checks it: a
// figure whose check sum is a multiple of 11. Only eleven characters are
// summed, so a figure of another length passes.
bool IsValidCuit(QString& text);

// The check on leaving a masked CUIT field; false keeps the focus there.
bool ValidateCuitField(Field& field);

// True when no taxpayer has this CUIT (masked form "##-########-#").
bool CuitIsFree(const QString& cuit);

// --- Key filters (character codes; key := 0 refuses the key) ----------------

// Digits, backspace, and the decimal symbol when `allowSeparator`.
void FilterDecimalKey(int& key, bool allowSeparator);
// As FilterDecimalKey with the digits 1 to 7 only.
void FilterRateKey(int& key, bool allowSeparator);
// Backspace and blank always; letters as capitals; with `alsoDigits` also the
// digits and "Ñ".
void FilterLetterKey(int& key, bool alsoDigits);

// --- Lists and grids --------------------------------------------------------

// Column widths and the width of a combo's drop-down list belong to the view,
// which sizes them to their contents itself; the logic keeps the calls where
// the windows made them, and they change no field.
void AutoSizeGridColumns(Field& grid);
void SetComboDropWidth(Field& combo);

// The index of the last item equal to `text`, or 0 when none is.
int FindComboIndex(const Field& combo, const QString& text);

// Removes the first data row a number of times, as the forms do before
// refilling a grid (see the kinds in Util.cpp).
void TrimGridRows(Field& grid, int rows, int kind);

// Removes from a list view each row with a sub-item equal to "AJUSTE".
void RemoveAdjustmentRows(Field& list);

// --- Declarations -----------------------------------------------------------

// Whether the date of a new rectification is later than the latest one of the
// declaration that the parameter string names; shows why when it is not.
bool ValidateRectificationDate(const QString& parameters, const QString& date);

// The number of registration rows of the declaration in the parameter string.
int CountFormRows(const QString& parameters);

// True when a node of the tree has a key holding the whole parameter string,
// for the same form.
bool IsNodeOfFormPresent(const QString& parameters, const Field& tree);

// True when any premises of the taxpayer has a declaration registered.
bool ContribuyenteHasForms(const QString& idContribuyente);

// The copy flag of the older filing scheme's header row named in the string.
bool IsEncFormularioCopy(const QString& parameters);

// Lets the person choose a folder; "" on Cancel.
QString BrowseForFolder(const QString& title);

// Fills gImportNames and gImportNamesPlain with the column titles of import
// files, with and without accents.
void InitImportColumnNames();
