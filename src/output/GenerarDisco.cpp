#include "GenerarDisco.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include "RememberedFolders.h"
#include "ReportDriver.h"
#include "Tovak.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoGenerateDisk.h"
#include "ZoHashGuid.h"

namespace {

const QString kTitle = QStringLiteral("Atención !");

// The forms whose number is written with a leading zero in the file's name.
const QStringList kThreeDigitForms = {"976", "977", "978", "985", "986", "987", "988"};

} // namespace

GenerarDisco::GenerarDisco() : Controller(QStringLiteral("GenerarDisco")) {}

void GenerarDisco::design()
{
    setCaption(QStringLiteral("Generación de Disco"));
    add(QStringLiteral("lblRotuloTitulo"), FieldKind::Label,
        QStringLiteral("Generación del Formulario "));
    add(QStringLiteral("lblRotuloDestino"), FieldKind::Label,
        QStringLiteral("Seleccione el Destino:"));
    add(QStringLiteral("txtDestino"), FieldKind::Text, QDir::homePath());
    add(QStringLiteral("cmdBuscarDestino"), FieldKind::Button, QStringLiteral("..."));
    add(QStringLiteral("Label1"), FieldKind::Label, QStringLiteral("Cantidad de Impresiones"));
    add(QStringLiteral("txtCantidadImpresiones"), FieldKind::Text, QStringLiteral("1"));
    add(QStringLiteral("cmdVistaPrevia"), FieldKind::Button, QStringLiteral("Vista Previa"));
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));

    on(QStringLiteral("cmdBuscarDestino"), Ev::Click, [this](EventArgs&) {
        QString folder = BrowseForFolder(QStringLiteral("Buscar destino"));
        if (folder.isEmpty())
            folder = DestinoPorDefecto();
        field(QStringLiteral("txtDestino")).setText(folder);
    });
    on(QStringLiteral("txtCantidadImpresiones"), Ev::KeyPress, [](EventArgs& e) {
        if (e.key >= 32 && (e.key < '0' || e.key > '9'))
            e.key = 0;
    });
    on(QStringLiteral("cmdVistaPrevia"), Ev::Click,
       [this](EventArgs&) { ReportDriver::Imprimir(Parametros, true); });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { Aceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { unload(); });
}

void GenerarDisco::onLoad()
{
    field(QStringLiteral("txtDestino")).setText(RememberedFolder(QStringLiteral("Generar")));
    field(QStringLiteral("cmdAceptar")).setEnabled(true);
    field(QStringLiteral("cmdVistaPrevia")).setEnabled(!TotalPeriodo);
    field(QStringLiteral("lblRotuloTitulo")).setText(Titulo());
}

QString GenerarDisco::Titulo() const
{
    // A whole month is several forms: naming the first one of them would
    // mislead, so the month is named instead.
    if (!TotalPeriodo)
        return QStringLiteral("Generación del Formulario ") +
               ReadParameter(Parametros, QStringLiteral("Formulario"));
    QString month = ReadParameter(Parametros, QStringLiteral("Periodo"));
    const QString year = ReadParameter(Parametros, QStringLiteral("Anio"));
    if (!month.contains(u'-') && !year.isEmpty())
        month = QStringLiteral("%1-%2").arg(month.toInt(), 2, 10, QChar(u'0')).arg(year);
    return QStringLiteral("Generación del Período ") + month;
}

void GenerarDisco::Aceptar()
{
    if (CantidadImpresiones() < 0) {
        MsgBox(QStringLiteral("La cantidad de impresiones debe ser un número entero."),
               Msg::Exclamation, kTitle);
        setFocus(QStringLiteral("txtCantidadImpresiones"));
        return;
    }
    m_archivos.clear();
    m_sinImprimir.clear();
    const bool ok = TotalPeriodo ? GenerarPeriodo() : GenerarFormulario(Parametros);
    if (!ok)
        return;
    MsgBox(MensajeFinal(), Msg::Information, kTitle);
    unload();
}

QString GenerarDisco::MensajeFinal() const
{
    QString text = QStringLiteral("La generación se realizó correctamente.");
    if (!m_archivos.isEmpty()) {
        text += QStringLiteral("\n\nArchivos generados en ") +
                QDir::toNativeSeparators(QFileInfo(m_archivos.first()).absolutePath()) +
                QStringLiteral(":");
        for (const QString& file : m_archivos)
            text += QStringLiteral("\n  ") + QFileInfo(file).fileName();
    }
    if (!m_sinImprimir.isEmpty())
        text += QStringLiteral("\n\nCopias no impresas:\n  ") +
                m_sinImprimir.join(QStringLiteral("\n  "));
    return text;
}

int GenerarDisco::CantidadImpresiones()
{
    bool ok = false;
    const int copies = field(QStringLiteral("txtCantidadImpresiones")).text().trimmed().toInt(&ok);
    return ok && copies >= 0 ? copies : -1;
}

QString GenerarDisco::NombreMes(const QString& code)
{
    static const QStringList months = {"Enero",      "Febrero", "Marzo",     "Abril",
                                       "Mayo",       "Junio",   "Julio",     "Agosto",
                                       "Septiembre", "Octubre", "Noviembre", "Diciembre"};
    static const QStringList codes = {"01", "02", "03", "04", "05", "06",
                                      "07", "08", "09", "10", "11", "12"};
    const int index = codes.indexOf(code);
    return index < 0 ? QString() : months.at(index);
}

QString GenerarDisco::NombreArchivo(const QString& destino, const QString& parameters)
{
    QString number = ReadParameter(parameters, QStringLiteral("Formulario"));
    number.remove(QChar(u'F'), Qt::CaseInsensitive);
    if (kThreeDigitForms.contains(number))
        number.prepend(u'0');
    QString month = ReadParameter(parameters, QStringLiteral("Periodo"));
    QString year = ReadParameter(parameters, QStringLiteral("Anio"));
    if (month.contains(u'-')) {
        year = month.section(u'-', 1, 1);
        month = month.section(u'-', 0, 0);
    }
    bool numeric = false;
    const int m = month.toInt(&numeric);
    if (numeric)
        month = QStringLiteral("%1").arg(m, 2, 10, QChar(u'0'));
    QString folder = destino;
    if (!folder.endsWith(u'/'))
        folder += u'/';
    return folder + number + month + year.right(2) + QStringLiteral(".DJ");
}

QString GenerarDisco::DestinoPorDefecto()
{
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const QString root = volume.rootPath();
        if (volume.isValid() && volume.isReady() &&
            (root.startsWith(QStringLiteral("/media/")) ||
             root.startsWith(QStringLiteral("/run/media/"))))
            return root;
    }
    return QDir::homePath();
}

bool GenerarDisco::GenerarArchivo(const QString& parameters)
{
    const QString destino = field(QStringLiteral("txtDestino")).text();
    const QString name = NombreArchivo(destino, parameters);
    QFile::remove(name); // an earlier file of the name must not pass for this one
    ZoGenerateDisk disk;
    disk.Parametros = parameters;
    disk.Path = destino;
    if (!disk.CreateFile(name, false))
        return false;
    RememberFolder(QStringLiteral("Generar"), destino);
    if (!QFileInfo::exists(name)) {
        // The writer answers true for a text it could not complete; the
        // person learns what kept the file from being written.
        const QString falla = disk.Falla().isEmpty()
                                  ? QStringLiteral("El texto de la declaración quedó incompleto.")
                                  : disk.Falla();
        MsgBox(QStringLiteral("No se pudo crear el archivo ") + QDir::toNativeSeparators(name) +
                   QStringLiteral(".\n") + falla,
               Msg::Critical, kTitle);
        return false;
    }
    if (!m_archivos.contains(name)) // the same name again replaced the earlier file
        m_archivos << name;
    return true;
}

bool GenerarDisco::GenerarFormulario(const QString& parameters)
{
    EnsureDeclarationGuidv(parameters);
    if (!GenerarArchivo(parameters))
        return false;
    const int copies = qMax(0, CantidadImpresiones());
    for (int i = 0; i < copies; ++i) {
        QString why;
        if (!ReportDriver::Imprimir(parameters, false, &why)) {
            // Said once; the file stays, and the final message tells.
            m_sinImprimir << ReadParameter(parameters, QStringLiteral("Formulario")) +
                                 QStringLiteral(": %1 de %2 %3, porque ")
                                     .arg(copies - i)
                                     .arg(copies)
                                     .arg(copies == 1 ? QStringLiteral("copia")
                                                      : QStringLiteral("copias")) +
                                 why + u'.';
            break;
        }
    }
    return true;
}

bool GenerarDisco::GenerarPeriodo()
{
    QString list = Parametros + u'#';
    while (list.contains(u'#')) {
        const int cut = list.indexOf(u'#');
        const QString item = list.left(cut);
        list = list.mid(cut + 1);
        Parametros = item;
        if (!item.contains(QStringLiteral("Formulario")))
            continue;
        if (!GenerarFormulario(item))
            return false;
    }
    return true;
}
