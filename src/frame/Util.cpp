#include "Util.h"

#include <QRegularExpression>
#include <QUuid>

#include "Controller.h"
#include "Field.h"
#include "Globals.h"
#include "Numbers.h"
#include "SqlText.h"
#include "Tovak.h"
#include "UiPort.h"
#include "ZoAccess.h"

namespace {

const QString kAttention = QStringLiteral("Atención !");

bool isDigitKey(int key)
{
    return key >= '0' && key <= '9';
}

// The weighted sum of the eleven digits of a CUIT: the weights 5 4 3 2 7 6 5
// 4 3 2 1, the last one on the check digit, so a right CUIT sums to a
// multiple of 11. nullopt when a character is not a digit.
std::optional<int> cuitSum(const QString& digits)
{
    static const QString weights = QStringLiteral("54327654321");
    int sum = 0;
    for (int i = 0; i < weights.size(); ++i) {
        const QChar c = digits.at(i);
        if (!c.isDigit() || c.unicode() > 127)
            return std::nullopt;
        sum += c.digitValue() * weights.at(i).digitValue();
    }
    return sum;
}

// Keeps digits, backspace and, when allowed, the decimal symbol; digits only
// from `lowest` on and up to `highest`.
void filterNumberKey(int& key, bool allowSeparator, char lowest, char highest)
{
    gDecimalSymbol = GetDecimalSymbol();
    if (key == KeyCode::Back || (key >= lowest && key <= highest))
        return;
    if (allowSeparator && key == gDecimalSymbol.at(0).unicode())
        return;
    key = 0;
}

// The padrón and objeto held together in the parameter key "Padron".
QString padronOf(const QString& padron)
{
    return padron.left(13);
}

QString objetoOf(const QString& padron)
{
    return padron.right(13);
}

// The declaration's code without its final letter: taken from "Codigo", or
// rebuilt from the premises and the period when that is not 32 long.
QString codeWithoutLetter(const QString& parameters)
{
    QString code = ReadParameter(parameters, QStringLiteral("Codigo"));
    if (!code.isEmpty())
        code.chop(1);
    if (code.size() == 32)
        return code;
    const QString padron = ReadParameter(parameters, QStringLiteral("Padron"));
    const QString periodo = ReadParameter(parameters, QStringLiteral("Periodo"));
    const QString month = periodo.size() >= 3
                              ? periodo.left(2) + periodo.right(4)
                              : periodo + ReadParameter(parameters, QStringLiteral("Anio"));
    return padronOf(padron) + month + objetoOf(padron);
}

// The date as "dd-mm-yyyy". An original's "0" reads as day zero of the old
// date calendar, so it is later than no date at all and earlier than any
// rectification; any other text that is no date stays as it is.
QString rectificationDateText(const QString& date)
{
    if (date == QLatin1String("0"))
        return QStringLiteral("30-12-1899");
    const QDate day = TextToDate(date);
    return day.isValid() ? day.toString(QStringLiteral("dd-MM-yyyy")) : date;
}

// Whether `a` is later than `b`, compared as the texts stand: the year by the
// last four characters, then the month by characters 4-5, then the day by the
// first two.
bool laterByText(const QString& a, const QString& b)
{
    const double yearA = Val(a.right(4)), yearB = Val(b.right(4));
    if (yearA != yearB)
        return yearA > yearB;
    const double monthA = Val(a.mid(3, 2)), monthB = Val(b.mid(3, 2));
    if (monthA != monthB)
        return monthA > monthB;
    return Val(a.left(2)) > Val(b.left(2));
}

QString latestRectificationSql(const QString& parameters, const QString& form)
{
    if (form == QLatin1String("F988") || form == QLatin1String("F986")) {
        return QStringLiteral("SELECT MAX(FECHARECTIFICATIVA) FROM ") + form +
               QStringLiteral(" WHERE PADRON = '") +
               Sq(ReadParameter(parameters, QStringLiteral("Padron"))) +
               QStringLiteral("' AND PERIODO = '") +
               Sq(ReadParameter(parameters, QStringLiteral("Periodo"))) + u'-' +
               Sq(ReadParameter(parameters, QStringLiteral("Anio"))) + u'\'';
    }
    const QString code = Sq(codeWithoutLetter(parameters));
    return QStringLiteral("SELECT MAX(FECHARECTIFICATIVA) FROM ") + form +
           QStringLiteral(" WHERE CODIGO IN ('") + code + QStringLiteral("O','") + code +
           QStringLiteral("R')");
}

bool isYes(const QString& flag)
{
    return flag == QLatin1String("Verdadero") || flag == QLatin1String("True");
}

} // namespace

// --- Text and numbers -----------------------------------------------------

QString NullToText(const QVariant& value)
{
    return VariantText(value);
}

QString ZeroIfEmpty(const QString& text)
{
    return text.isEmpty() ? LocaleFixed(0, 2, false) : text;
}

QString FormatAmount(const QString& text)
{
    const auto value = LocaleNumber(text);
    return value ? LocaleFixed(*value, 2, true) : text;
}

double TextToDouble(const QString& text)
{
    return LocaleNumber(text).value_or(0);
}

QString AmountToSqlText(const QString& text)
{
    // The amount rounded to two decimals as FormatAmount shows it, with its
    // groups taken out and a "." for the decimal.
    const auto value = LocaleNumber(text);
    return value ? PlainFixed(*value, 2) : text;
}

QString NormalizeAmount(const QString& text)
{
    QString amount = text;
    if (gDecimalSymbol != QLatin1String(".")) {
        amount.remove(u',');
        amount.replace(u'.', u',');
    }
    const auto value = LocaleNumber(amount);
    return value ? LocaleFixed(*value, 2, false) : amount;
}

QString DigitsOnly(const QString& text)
{
    QString out;
    for (QChar c : text)
        if (c >= u'0' && c <= u'9')
            out += c;
    return out;
}

QString GetDecimalSymbol()
{
    return LocaleFixed(0.5, 1, false).mid(1, 1);
}

QString NewShortGuid()
{
    const QString guid = QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
    return guid.right(13).left(12);
}

QDate TextToDate(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral(
        "^\\s*(\\d{2})([-/])(\\d{2})\\2(\\d{4})(\\s+\\d{1,2}:\\d{2}(:\\d{2})?)?\\s*$"));
    const auto match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    return QDate(match.captured(4).toInt(), match.captured(3).toInt(), match.captured(1).toInt());
}

// --- CUIT -----------------------------------------------------------------

QString FormatCuit(const QString& text)
{
    // Written into one text: a CUIT of each line of an import passes here.
    const QStringView digits(text);
    QString out;
    out.reserve(qMin<qsizetype>(digits.size(), 11) + 2);
    out.append(digits.left(2)).append(u'-');
    if (digits.size() > 2)
        out.append(digits.mid(2, 8));
    return out.append(u'-').append(digits.right(1));
}

bool IsValidCuit(QString& text)
{
    text.remove(u'-');
    // Eleven plain digits, as a CUIT is written, are a number whatever the
    // regional symbols: their sum is taken at once.
    if (text.size() == 11)
        if (const auto sum = cuitSum(text))
            return *sum % 11 == 0;
    if (!IsNumericText(text))
        return false;
    if (text.size() != 11)
        return true; // no sum is taken, and 0 is a multiple of 11
    const auto sum = cuitSum(text);
    return sum && *sum % 11 == 0;
}

bool ValidateCuitField(Field& field)
{
    if (!field.enabled())
        return true;
    const QString digits = DigitsOnly(field.text().trimmed());
    if (digits.size() != 11) {
        MsgBox(QStringLiteral("Número de CUIT incorrecto"), Msg::Exclamation);
        field.selectAll();
        return false;
    }
    if (*cuitSum(digits) % 11 == 0)
        return true;
    const int answer = MsgBox(QStringLiteral("Número de CUIT incorrecto, desea continuar?"),
                              Msg::YesNo, kAttention);
    if (answer == Msg::Yes)
        return true;
    field.selectAll();
    return false;
}

bool CuitIsFree(const QString& cuit)
{
    return gAccess()
        .GetString(QStringLiteral("SELECT ApellidoNombre FROM Contribuyentes WHERE Cuit = '") +
                   Sq(cuit) + u'\'')
        .isEmpty();
}

// --- Key filters ------------------------------------------------------------

void FilterDecimalKey(int& key, bool allowSeparator)
{
    filterNumberKey(key, allowSeparator, '0', '9');
}

void FilterRateKey(int& key, bool allowSeparator)
{
    filterNumberKey(key, allowSeparator, '1', '7');
}

void FilterLetterKey(int& key, bool alsoDigits)
{
    constexpr int blank = ' ';
    constexpr int capitalEnye = 0x00D1; // "Ñ"
    if (key == KeyCode::Back || key == blank)
        return;
    key = QChar(key).toUpper().unicode();
    const bool letter = key >= 'A' && key <= 'Z';
    const bool passes = alsoDigits ? letter || isDigitKey(key) || key == capitalEnye : letter;
    if (!passes)
        key = 0;
}

// --- Lists and grids --------------------------------------------------------

void AutoSizeGridColumns(Field&) {}

void SetComboDropWidth(Field&) {}

int FindComboIndex(const Field& combo, const QString& text)
{
    for (int i = combo.listCount() - 1; i >= 0; --i)
        if (combo.itemText(i) == text)
            return i;
    return 0;
}

void TrimGridRows(Field& grid, int rows, int kind)
{
    // The old grid counted its title row among its rows and numbered the
    // first data row 1; here the title is apart and that row is row 0.
    const int gridRows = grid.rowCount() + 1;
    int times = 0;
    if (kind == 1)
        times = 1;
    else if (kind == 2 || (kind == 3 && rows < 4))
        times = gridRows - rows - 1;
    else if (kind == 3)
        times = rows + 1;
    if (rows == 1)
        ++times;
    for (int i = 0; i < times && grid.rowCount() > 0; ++i)
        grid.removeRow(0);
}

void RemoveAdjustmentRows(Field& list)
{
    for (int row = list.rowCount() - 1; row >= 0; --row) {
        const QStringList& cells = list.row(row);
        for (int col = 1; col < cells.size(); ++col) {
            if (cells.at(col) == QLatin1String("AJUSTE")) {
                list.removeRow(row);
                break;
            }
        }
    }
}

// --- Declarations -----------------------------------------------------------

bool ValidateRectificationDate(const QString& parameters, const QString& date)
{
    if (date.startsWith(u'_'))
        return true;
    const QString form = ReadParameter(parameters, QStringLiteral("Formulario"));
    const QString newDate = rectificationDateText(date);
    const QString latest = gAccess().GetString(latestRectificationSql(parameters, form));
    // The formatted date is never "0" (see above), so every new declaration
    // compares its date with the latest one.
    const bool isNew = isYes(ReadParameter(parameters, QStringLiteral("Nuevo")));
    if (isNew && !laterByText(newDate, latest)) {
        MsgBox(QStringLiteral("La fecha de Rectificativa debe ser mayor a la del formulario a "
                              "rectificar."),
               Msg::Information);
        return false;
    }
    return true;
}

int CountFormRows(const QString& parameters)
{
    const QString padron = ReadParameter(parameters, QStringLiteral("Padron"));
    gSql = QStringLiteral("SELECT * FROM TPadrones_Formularios WHERE Padron = '") +
           Sq(padronOf(padron)) + QStringLiteral("' AND Objeto = '") + Sq(objetoOf(padron)) +
           QStringLiteral("' AND Periodo = '") +
           Sq(ReadParameter(parameters, QStringLiteral("Anio"))) + u'-' +
           Sq(ReadParameter(parameters, QStringLiteral("Periodo"))) +
           QStringLiteral("' AND idFormulario = '") +
           Sq(ReadParameter(parameters, QStringLiteral("Formulario"))) +
           QStringLiteral("' AND Rectificativa = '") +
           Sq(ReadParameter(parameters, QStringLiteral("Rectificativa"))) + u'\'';
    const RecordsetPtr rs = gAccess().FillRecordSet(gSql);
    return rs ? rs->RecordCount() : 0;
}

bool IsNodeOfFormPresent(const QString& parameters, const Field& tree)
{
    const QString form = ReadParameter(parameters, QStringLiteral("Formulario"));
    for (const TreeNode& node : tree.tree().nodes()) {
        if (!node.key.isEmpty() && node.key.contains(parameters) &&
            ReadParameter(node.key, QStringLiteral("Formulario")) == form)
            return true;
    }
    return false;
}

bool ContribuyenteHasForms(const QString& idContribuyente)
{
    if (!IsNumericText(idContribuyente))
        return false;
    QString cuit = gAccess().GetString(
        QStringLiteral("SELECT Cuit FROM Contribuyentes WHERE idContribuyente = ") +
        idContribuyente.trimmed());
    cuit.remove(u'-');
    const RecordsetPtr premises = gAccess().FillRecordSet(
        QStringLiteral("SELECT padron, objeto FROM tPadronesComerciales WHERE cuit = '") +
        Sq(cuit) + u'\'');
    for (; premises && !premises->EOF_(); premises->MoveNext()) {
        const RecordsetPtr forms = gAccess().FillRecordSet(
            QStringLiteral("SELECT TOP 1 Id FROM TPadrones_Formularios WHERE Padron = '") +
            Sq(premises->Text(QStringLiteral("padron"))) + QStringLiteral("' AND Objeto = '") +
            Sq(premises->Text(QStringLiteral("objeto"))) + u'\'');
        if (forms && forms->RecordCount() > 0)
            return true;
    }
    return false;
}

bool IsEncFormularioCopy(const QString& parameters)
{
    const QString id = ReadParameter(parameters, QStringLiteral("idEncFormulario"));
    if (!IsNumericText(id))
        return false;
    return gAccess().GetBoolean(
        QStringLiteral("SELECT COPIA FROM ENCFORMULARIOS WHERE IDENCFORMULARIO = ") + id.trimmed());
}

QString BrowseForFolder(const QString& title)
{
    return ui().chooseFolder(title);
}

void InitImportColumnNames()
{
    gImportNames = {
        QStringLiteral("Alícuota"),
        QStringLiteral("Base Imponible"),
        QStringLiteral("Código"),
        QStringLiteral("Código de Actividad"),
        QStringLiteral("CUIT"),
        QStringLiteral("Denominación"),
        QStringLiteral("Descripción Actividad"),
        QStringLiteral("Fecha"),
        QStringLiteral("Importe"),
        QStringLiteral("Impuesto"),
        QStringLiteral("Número de Comprobante"),
        QStringLiteral("Padrón"),
        QStringLiteral("Tipo de Comprobante"),
    };
    gImportNamesPlain = {
        QStringLiteral("Alicuota"),
        QStringLiteral("Base Imponible"),
        QStringLiteral("Codigo"),
        QStringLiteral("Codigo de Actividad"),
        QStringLiteral("CUIT"),
        QStringLiteral("Denominacion"),
        QStringLiteral("Descripcion Actividad"),
        QStringLiteral("Fecha"),
        QStringLiteral("Importe"),
        QStringLiteral("Impuesto"),
        QStringLiteral("Numero de Comprobante"),
        QStringLiteral("Padron"),
        QStringLiteral("Tipo de Comprobante"),
    };
}
