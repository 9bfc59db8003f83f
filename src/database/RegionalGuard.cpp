#include "RegionalGuard.h"

#include "ErrorLog.h"
#include "RegionalSettings.h"
#include "UiPort.h"

bool gRegionalChanged = false;

namespace {

const QString kSource = QStringLiteral("CONFIGURACION_REG");

// The value of a regional item. The old routine read the machine's locale into
// a blank-filled buffer, trimmed the blanks, and its callers cut off the final
// NUL the text still carried. The settings kept here carry neither padding nor
// NUL, so nothing is trimmed or cut: cutting would take a real character
// ("dd-MM-yyyy" would become "dd-MM-yyy" and be refused), and trimming would
// lose a thousands symbol that is a blank.
QString localeText(Regional::Item item)
{
    return Regional::get(item);
}

// The error the old runtime raised when an empty value was cut.
void logEmpty(const QString& what)
{
    LogError(QStringLiteral("5"),
             QStringLiteral("Llamada a procedimiento o argumento no válidos (") + what +
                 QStringLiteral(" vacío)"),
             kSource);
}

} // namespace

bool CheckRegionalSettings()
{
    gRegionalChanged = false;

    const QString decimal = localeText(Regional::SDecimal).left(1);
    const QString thousands = localeText(Regional::SThousand).left(1);
    const QString currencyDecimal = localeText(Regional::SMonDecimalSep).left(1);

    // Lists in the exported files are separated by ";", on every start, and
    // it stays so.
    Regional::set(Regional::SList, QStringLiteral(";"));

    const QString languageId = localeText(Regional::ILanguage);
    const QString language = localeText(Regional::SLanguage);
    const QString shortDate = localeText(Regional::SShortDate);
    const QString dateSeparator = localeText(Regional::SDate);

    // A value of length 0 is a failure of the routine: it is logged and the
    // start goes on, as it did when the old routine failed.
    const std::pair<const QString*, const char*> required[] = {
        {&decimal, "sDecimal"},     {&thousands, "sThousand"}, {&currencyDecimal, "sMonDecimalSep"},
        {&languageId, "iLanguage"}, {&language, "sLanguage"},  {&shortDate, "sShortDate"},
        {&dateSeparator, "sDate"},
    };
    for (const auto& [value, name] : required)
        if (value->isEmpty()) {
            logEmpty(QString::fromLatin1(name));
            return true;
        }

    // English passes too, though the text recommends Spanish alone.
    const QString languageUpper = language.toUpper();
    const bool knownLanguage = languageUpper.contains(QStringLiteral("ESPAÑOL")) ||
                               languageUpper.contains(QStringLiteral("SPANISH")) ||
                               languageUpper.contains(QStringLiteral("INGLÉS")) ||
                               languageUpper.contains(QStringLiteral("ENGLISH"));
    if (!knownLanguage) {
        MsgBox(QStringLiteral("Se ha detectado que la configuración de su sistema tiene como "
                              "idioma: ") +
                   language + QStringLiteral("\n") +
                   QStringLiteral("Se recomienda cambiar a Español, de lo contrario no iniciara "
                                  "el sistema."),
               Msg::Information);
        return false;
    }

    const QString dateUpper = shortDate.toUpper();
    if (!dateUpper.contains(QStringLiteral("DD-MM-YYYY")) &&
        !dateUpper.contains(QStringLiteral("DD/MM/YYYY"))) {
        MsgBox(QStringLiteral("Se ha detectado que la configuración de su sistema tiene como "
                              "fecha: ") +
                   shortDate + QStringLiteral("\n") + QStringLiteral("Se recomienda cambiar a DD") +
                   dateSeparator + QStringLiteral("MM") + dateSeparator +
                   QStringLiteral("YYYY, de lo contrario no iniciara el sistema."),
               Msg::Information);
        return false;
    }

    if (decimal == thousands) {
        MsgBox(QStringLiteral("Se ha detectado que la configuración de su sistema tiene como "
                              "separadores de miles y de decimales el mismo simbolo (") +
                   decimal + QStringLiteral(")") + QStringLiteral("\n") +
                   QStringLiteral("Se recomienda cambiar a simbolos diferentes, de lo contrario "
                                  "no iniciara el sistema."),
               Msg::Information);
        return false;
    }

    if (decimal == QLatin1String(".") || currencyDecimal == QLatin1String(".")) {
        const int answer = MsgBox(
            QStringLiteral("Se ha detectado que la configuración de su sistema tiene como "
                           "separadores de decimales el simbolo (.) Aceptar = Cambiar a simbolo "
                           "(,) Punto y continuar. 0 Cancelar? "),
            Msg::OkCancel + Msg::Exclamation, QStringLiteral("... Atención !"));
        if (answer == Msg::Cancel)
            return false;
        // For good: nothing puts the old symbols back when the program ends.
        gRegionalChanged = true;
        Regional::set(Regional::SDecimal, QStringLiteral(","));
        Regional::set(Regional::SThousand, QStringLiteral("."));
        Regional::set(Regional::SMonDecimalSep, QStringLiteral(","));
        Regional::set(Regional::SMonThousandSep, QStringLiteral("."));
    }
    return true;
}
