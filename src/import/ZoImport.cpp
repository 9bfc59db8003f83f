#include "ZoImport.h"

#include <QFileInfo>

#include "Controller.h"
#include "DetailImporter.h"
#include "Field.h"
#include "Globals.h"
#include "ImportRule.h"
#include "RememberedFolders.h"
#include "Tovak.h"
#include "UiPort.h"
#include "Util.h"

namespace {

const QString kAtencion = QStringLiteral("¡Atención!");

// The command buttons and grids of a form, disabled for the length of an
// import and given back their own state afterwards.
class FormLock
{
public:
    FormLock(Controller* form, bool active)
    {
        if (!form || !active)
            return;
        for (Field* f : form->fields())
            if (f->kind() == FieldKind::Button || f->kind() == FieldKind::Grid) {
                m_saved.append({f, f->enabled()});
                f->setEnabled(false);
            }
    }
    ~FormLock()
    {
        for (const auto& [field, enabled] : m_saved)
            field->setEnabled(enabled);
    }

private:
    QVector<QPair<Field*, bool>> m_saved;
};

QString letra(int column)
{
    return QString(QChar(u'A' + column));
}

QString sinAcentos(const QString& name)
{
    if (gImportNames.isEmpty())
        InitImportColumnNames();
    const int i = int(gImportNames.indexOf(name));
    return i >= 0 ? gImportNamesPlain.value(i, name) : name;
}

QString lineasImportadas(qint64 lineas)
{
    return lineas == 1 ? QStringLiteral("se importó 1 línea")
                       : QStringLiteral("se importaron ") + QString::number(lineas) +
                             QStringLiteral(" líneas");
}

} // namespace

QString ZoImport::CarpetaAnterior()
{
    return RememberedFolder(QStringLiteral("Importar"));
}

QString ZoImport::Filtro()
{
    return QStringLiteral("Archivo de Texto (*.txt);;Hoja de cálculo de Excel (*.xls *.xlsx);;"
                          "Hoja de cálculo de LibreOffice (*.ods);;Todos los archivos (*)");
}

bool ZoImport::EsExcel(const QString& path)
{
    return QFileInfo(path).fileName().toLower().contains(QLatin1String(".xls"));
}

QString ZoImport::TituloHoja(const QString& path)
{
    return EsExcel(path) ? QStringLiteral("Importar archivo de Excel")
                         : QStringLiteral("Importar hoja de cálculo");
}

bool ZoImport::elegirArchivo(QString& path)
{
    path = Path;
    if (path.isEmpty()) {
        path = ui().chooseOpenFile(QStringLiteral("Buscar Archivo"), Filtro(), CarpetaAnterior());
        if (path.isEmpty())
            return false;
        RememberFolder(QStringLiteral("Importar"), path);
    }
    return true;
}

bool ZoImport::Importar(QString& parametros, bool controls)
{
    s_detener = false;
    QString path;
    if (!elegirArchivo(path))
        return false;
    const ImportRule* rule = ImportRule::Find(
        IdFormulario.isEmpty() ? ReadParameter(parametros, QStringLiteral("Formulario"))
                               : IdFormulario);
    if (!rule)
        return false;
    FormLock lock(Formulario, controls);
    const QString nombre = QFileInfo(path).fileName().toLower();
    bool result = false;
    DetailImporter importer(*rule, parametros, Mes, Anio, ProgressBar);
    if (nombre.contains(QLatin1String(".txt"))) {
        ui().setBusy(true);
        result = importer.ImportarTexto(path);
    } else if (nombre.contains(QLatin1String(".xls")) || nombre.contains(QLatin1String(".ods"))) {
        // The OpenDocument sheet follows the rules of the Excel one.
        const bool encabezado =
            MsgBox(EsExcel(path) ? QStringLiteral("La hoja del archivo Excel, ¿tiene encabezado?")
                                 : QStringLiteral("La hoja del archivo, ¿tiene encabezado?"),
                   Msg::YesNo + Msg::Question, TituloHoja(path)) == Msg::Yes;
        ui().setBusy(true);
        result = importer.ImportarHoja(path, encabezado);
    }
    ui().setBusy(false);
    if (ProgressBar)
        ProgressBar->setVisible(false);
    // An import that ran to its end says how many lines it brought.
    if (result)
        MsgBox(QStringLiteral("Importación terminada: ") + lineasImportadas(importer.Importadas()) +
                   QStringLiteral(" de ") + QFileInfo(path).fileName() + u'.',
               Msg::Information, QStringLiteral("Importar"));
    return result;
}

bool ZoImport::ImportarDesde(Controller& form, QString& parametros, Field* progress)
{
    ZoImport import;
    import.IdFormulario = ReadParameter(parametros, QStringLiteral("Formulario"));
    if (!ImportRule::Find(import.IdFormulario))
        import.IdFormulario = form.windowName();
    import.ProgressBar = progress;
    import.Formulario = &form;
    return import.Importar(parametros, true);
}

QString ZoImport::DeleteZeros(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && text.at(i) == u'0')
        ++i;
    return text.mid(i);
}

bool ZoImport::EsFecha(const QString& fecha)
{
    if (fecha.size() != 10 || fecha.at(2) != u'-' || fecha.at(5) != u'-')
        return false;
    // Plain digits, as every line of a file writes them, are read at once;
    // any other writing takes the general reading.
    int day = 0, month = 0, year = 0;
    for (int i : {0, 1, 3, 4, 6, 7, 8, 9}) {
        const char16_t c = fecha.at(i).unicode();
        if (c < u'0' || c > u'9')
            return TextToDate(fecha).isValid();
        int& part = i < 2 ? day : i < 5 ? month : year;
        part = part * 10 + (c - u'0');
    }
    return QDate(year, month, day).isValid();
}

bool ZoImport::FechaPeriodo(const QString& fecha, int mes, int anio)
{
    if (!EsFecha(fecha))
        return false;
    const int dia = fecha.left(2).toInt();
    const int mesFecha = fecha.mid(3, 2).toInt();
    const int anioFecha = fecha.right(4).toInt();
    if (dia >= 32 || mesFecha >= 13 || anioFecha >= 2051)
        return false;
    return anioFecha * 100 + mesFecha <= anio * 100 + mes;
}

bool ZoImport::EsCuitValido(const QString& cuit)
{
    QString digits = QString(cuit).remove(u'-');
    if (digits.size() != 11)
        return false;
    for (QChar c : digits)
        if (c < u'0' || c > u'9')
            return false;
    return IsValidCuit(digits);
}

bool ZoImport::VerificarColumnas(const QStringList& titulos, int columnCount, bool encabezado,
                                 const QStringList& columnas)
{
    if (columnCount != columnas.size()) {
        QString texto = QStringLiteral("La cantidad de columnas no es correcta. ") +
                        (encabezado ? QStringLiteral("Verifique el encabezado de las ")
                                    : QStringLiteral("Verifique la existencia de las ")) +
                        QString::number(columnas.size()) + QStringLiteral(" columnas: ");
        for (int i = 0; i < columnas.size(); ++i)
            texto += u'\n' + letra(i) + QStringLiteral(" - ") + columnas.at(i);
        MsgBox(texto, Msg::Information, kAtencion);
        return false;
    }
    if (!encabezado)
        return true;
    for (int i = 0; i < columnas.size(); ++i) {
        const QString titulo = titulos.value(i).trimmed();
        if (titulo == columnas.at(i) || titulo == sinAcentos(columnas.at(i)))
            continue;
        MsgBox(QStringLiteral("No se encontró el campo '") + columnas.at(i) +
                   QStringLiteral("' en la columna ") + letra(i) +
                   QStringLiteral(".\nDeberá respetar exactamente el nombre establecido para "
                                  "cada columna. (Ver Ayuda)"),
               Msg::Information, kAtencion);
        return false;
    }
    return true;
}
