#include "frmBaseDatos.h"

#include <QFileInfo>
#include <libpq-fe.h>

#include "ErrorLog.h"
#include "Globals.h"
#include "PgPass.h"
#include "UiPort.h"
#include "Validar.h"
#include "backup/CopiaBaseDatos.h"
#include "backup/ServerBackup.h"

namespace {

const QString kOptArchivo = QStringLiteral("optArchivo");
const QString kOptServidor = QStringLiteral("optServidor");
const QString kServidor = QStringLiteral("txtServidor");
const QString kPuerto = QStringLiteral("txtPuerto");
const QString kBase = QStringLiteral("txtBase");
const QString kUsuario = QStringLiteral("txtUsuario");
const QString kContrasena = QStringLiteral("txtContrasena");
const QString kProbarTitle = QStringLiteral("Probar conexión");
const QString kCopiarTitle = QStringLiteral("Copiar base de datos");
const QString kAlServidor = QStringLiteral("cmdCopiarAlServidor");
const QString kAArchivo = QStringLiteral("cmdCopiarAArchivo");

// The fields that only matter for a server.
const QStringList kServerFields = {
    QStringLiteral("frmServidor"),
    QStringLiteral("lblServidor"),
    kServidor,
    QStringLiteral("lblPuerto"),
    kPuerto,
    QStringLiteral("lblBase"),
    kBase,
    QStringLiteral("lblUsuario"),
    kUsuario,
    QStringLiteral("lblContrasena"),
    kContrasena,
    QStringLiteral("lblNota"),
    QStringLiteral("cmdProbar"),
    QStringLiteral("lblCopiar"),
    kAlServidor,
    kAArchivo,
};

constexpr int kMaxPort = 65535;

// The client library speaks the desktop's language when it has a catalogue
// for it; while it connects it speaks English, so that the known causes of a
// failure are told in the program's own Spanish words.
class EnglishClientMessages
{
public:
    EnglishClientMessages()
        : m_before(qgetenv("LANGUAGE")), m_had(qEnvironmentVariableIsSet("LANGUAGE"))
    {
        qputenv("LANGUAGE", "en");
    }
    ~EnglishClientMessages()
    {
        if (m_had)
            qputenv("LANGUAGE", m_before);
        else
            qunsetenv("LANGUAGE");
    }

private:
    QByteArray m_before;
    bool m_had;
};

} // namespace

QString frmBaseDatos::ProbarConexion(const DatabaseLocation& location, const QString& password,
                                     bool* ok)
{
    // The location's own connection text first; what follows it wins.
    const QByteArray info = location.connectionInfo().toUtf8();
    const QByteArray secret = password.toUtf8();
    const QByteArray timeout = QByteArray::number(kTimeoutSeconds);
    const char* keys[] = {"dbname", "connect_timeout", "application_name", "password", nullptr};
    const char* values[] = {info.constData(), timeout.constData(), "Morvel",
                            password.isEmpty() ? nullptr : secret.constData(), nullptr};
    const EnglishClientMessages english;
    PGconn* connection = PQconnectdbParams(keys, values, 1);
    const bool connected = PQstatus(connection) == CONNECTION_OK;
    const QString said = QString::fromUtf8(PQerrorMessage(connection));
    PQfinish(connection);
    if (ok)
        *ok = connected;
    if (connected)
        return QStringLiteral("Conexión correcta.");
    LogError(QStringLiteral("-1"), location.describe() + QStringLiteral(": ") + said,
             QStringLiteral("frmBaseDatos"));
    return QStringLiteral("No se pudo conectar con el servidor: ") +
           ServerBackup::FailureText(said);
}

void frmBaseDatos::design()
{
    setCaption(QStringLiteral("Base de Datos"));
    add(kOptArchivo, FieldKind::Option, QStringLiteral("Archivo local"))
        .setGroup(QStringLiteral("tipo"));
    add(QStringLiteral("lblArchivo"), FieldKind::Label);
    add(kOptServidor, FieldKind::Option, QStringLiteral("Servidor PostgreSQL"))
        .setGroup(QStringLiteral("tipo"));
    designServer();
    add(QStringLiteral("lbl"), FieldKind::Label).setVisible(false);
    add(QStringLiteral("pb"), FieldKind::Progress).setVisible(false);
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));

    on(kOptArchivo, Ev::Click, [this](EventArgs&) { enableServer(); });
    on(kOptServidor, Ev::Click, [this](EventArgs&) { enableServer(); });
    on(kPuerto, Ev::KeyPress,
       [this](EventArgs& e) { gValidar().TextBox(e.key, field(kPuerto), Validar::Digits, 5); });
    on(QStringLiteral("cmdProbar"), Ev::Click, [this](EventArgs&) { probar(); });
    on(kAlServidor, Ev::Click, [this](EventArgs&) { copiarAlServidor(); });
    on(kAArchivo, Ev::Click, [this](EventArgs&) { copiarAArchivo(); });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { aceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { unload(); });
}

void frmBaseDatos::designServer()
{
    add(QStringLiteral("frmServidor"), FieldKind::Frame);
    add(QStringLiteral("lblServidor"), FieldKind::Label, QStringLiteral("Servidor:"));
    add(kServidor, FieldKind::Text).setMaxLength(255);
    add(QStringLiteral("lblPuerto"), FieldKind::Label, QStringLiteral("Puerto:"));
    add(kPuerto, FieldKind::Text).setMaxLength(5);
    add(QStringLiteral("lblBase"), FieldKind::Label, QStringLiteral("Base de datos:"));
    add(kBase, FieldKind::Text).setMaxLength(63);
    add(QStringLiteral("lblUsuario"), FieldKind::Label, QStringLiteral("Usuario:"));
    add(kUsuario, FieldKind::Text).setMaxLength(63);
    add(QStringLiteral("lblContrasena"), FieldKind::Label, QStringLiteral("Contraseña:"));
    add(kContrasena, FieldKind::Text);
    add(QStringLiteral("lblNota"), FieldKind::Label);
    add(QStringLiteral("cmdProbar"), FieldKind::Button, kProbarTitle);
    add(QStringLiteral("lblCopiar"), FieldKind::Label,
        QStringLiteral("Copiar la base de datos entre este equipo y el servidor:"));
    add(kAlServidor, FieldKind::Button, QStringLiteral("Copiar el archivo al servidor..."));
    add(kAArchivo, FieldKind::Button, QStringLiteral("Copiar el servidor a un archivo..."));
}

void frmBaseDatos::onLoad()
{
    const DatabaseLocation location = DatabaseLocation::current();
    field(QStringLiteral("lblArchivo")).setText(DatabasePath());
    field(kOptArchivo).setValue(location.isServer() ? 0 : 1);
    field(kOptServidor).setValue(location.isServer() ? 1 : 0);
    field(kServidor).setText(location.isServer() ? location.host : QStringLiteral("localhost"));
    field(kPuerto).setText(QString::number(location.port));
    field(kBase).setText(location.database);
    field(kUsuario).setText(location.user);
    field(QStringLiteral("lblNota"))
        .setText(QStringLiteral("La contraseña no se guarda en la configuración de Morvel: queda "
                                "en ") +
                 PgPass::FilePath() +
                 QStringLiteral(", que solo usted puede leer. Déjela vacía para conservar la "
                                "que ya está guardada."));
    enableServer();
}

void frmBaseDatos::enableServer()
{
    const bool server = field(kOptServidor).checked();
    for (const QString& name : kServerFields)
        field(name).setEnabled(server);
}

DatabaseLocation frmBaseDatos::Eleccion()
{
    DatabaseLocation location;
    if (!field(kOptServidor).checked())
        return location;
    location.kind = DatabaseLocation::Kind::Server;
    location.host = field(kServidor).text().trimmed();
    location.port = field(kPuerto).text().trimmed().toInt();
    location.database = field(kBase).text().trimmed();
    location.user = field(kUsuario).text().trimmed();
    return location;
}

// A server's choice names a database and a port that can be.
bool frmBaseDatos::complete()
{
    const DatabaseLocation location = Eleccion();
    QString missing;
    QString where;
    if (location.database.isEmpty()) {
        missing = QStringLiteral("Escriba el nombre de la base de datos del servidor.");
        where = kBase;
    } else if (location.port < 1 || location.port > kMaxPort) {
        missing = QStringLiteral("El puerto debe ser un número entre 1 y 65535.");
        where = kPuerto;
    }
    if (missing.isEmpty())
        return true;
    MsgBox(missing, Msg::Exclamation, caption());
    setFocus(where);
    return false;
}

void frmBaseDatos::probar()
{
    if (!complete())
        return;
    ui().setBusy(true);
    bool ok = false;
    const QString said = ProbarConexion(Eleccion(), field(kContrasena).text(), &ok);
    ui().setBusy(false);
    MsgBox(said, ok ? Msg::Information : Msg::Exclamation, kProbarTitle);
}

void frmBaseDatos::aceptar()
{
    const DatabaseLocation before = DatabaseLocation::current();
    const DatabaseLocation chosen = Eleccion();
    const QString password = field(kContrasena).text();
    if (chosen.isServer()) {
        if (!complete())
            return;
        ui().setBusy(true);
        bool ok = false;
        const QString said = ProbarConexion(chosen, password, &ok);
        ui().setBusy(false);
        if (!ok && MsgBox(said + QStringLiteral("\n¿Desea guardar esta elección de todos modos?"),
                          Msg::YesNo | Msg::Question | Msg::DefaultButton2, caption()) != Msg::Yes)
            return;
        if (!guardarContrasena(chosen))
            return;
    }
    DatabaseLocation::setCurrent(chosen);
    if (!(chosen == before))
        MsgBox(QStringLiteral("La base de datos elegida se usará la próxima vez que se inicie "
                              "Morvel."),
               Msg::Information, caption());
    unload();
}

// A password typed is kept in the password file, where the client library
// finds it for this server.
bool frmBaseDatos::guardarContrasena(const DatabaseLocation& location)
{
    const QString password = field(kContrasena).text();
    QString reason;
    if (password.isEmpty() || PgPass::Store(location, password, &reason))
        return true;
    MsgBox(QStringLiteral("No se pudo guardar la contraseña en ") + PgPass::FilePath() +
               QStringLiteral(": ") + reason,
           Msg::Critical, caption());
    return false;
}

void frmBaseDatos::copiarAlServidor()
{
    if (!complete())
        return;
    const DatabaseLocation servidor = Eleccion();
    if (MsgBox(QStringLiteral("Se copiará la base de datos del archivo ") + DatabasePath() +
                   QStringLiteral(" a la base de datos ") + servidor.describe() +
                   QStringLiteral(" del servidor, que debe estar vacía.\n¿Desea continuar?"),
               Msg::YesNo | Msg::Question | Msg::DefaultButton2, kCopiarTitle) != Msg::Yes)
        return;
    if (guardarContrasena(servidor))
        copiar(CopiaBaseDatos::Archivo(DatabasePath()), CopiaBaseDatos::Servidor(servidor));
}

void frmBaseDatos::copiarAArchivo()
{
    if (!complete())
        return;
    const DatabaseLocation servidor = Eleccion();
    const QString archivo = ui().chooseSaveFile(
        QStringLiteral("Copiar la base de datos del servidor a un archivo"),
        QStringLiteral("Base de datos de Morvel (*.db)"),
        QFileInfo(DatabasePath()).absolutePath() + QStringLiteral("/Morvel-") +
            servidor.database + QStringLiteral(".db"));
    if (archivo.isEmpty())
        return;
    if (MsgBox(QStringLiteral("Se copiará la base de datos ") + servidor.describe() +
                   QStringLiteral(" del servidor al archivo nuevo ") + archivo +
                   QStringLiteral(".\n¿Desea continuar?"),
               Msg::YesNo | Msg::Question | Msg::DefaultButton2, kCopiarTitle) != Msg::Yes)
        return;
    if (guardarContrasena(servidor))
        copiar(CopiaBaseDatos::Servidor(servidor), CopiaBaseDatos::Archivo(archivo));
}

void frmBaseDatos::copiar(const QString& origen, const QString& destino)
{
    CopiaBaseDatos copia(origen, destino);
    copia.OnAvance = [this](qint64 hechas, qint64 total, const QString& estado) {
        avance(hechas, total, estado);
    };
    field(QStringLiteral("pb")).setMaximum(100);
    ui().setBusy(true);
    const bool ok = copia.Copiar();
    ui().setBusy(false);
    field(QStringLiteral("pb")).setVisible(false);
    field(QStringLiteral("lbl")).setVisible(false);
    if (!ok) {
        MsgBox(copia.Motivo() + QStringLiteral("\nNo se copió nada: ") + copia.Destino() +
                   QStringLiteral(" quedó como estaba."),
               Msg::Exclamation, kCopiarTitle);
        return;
    }
    MsgBox(QStringLiteral("Se copiaron %1 tablas y %2 filas de %3 a %4.")
               .arg(copia.Tablas())
               .arg(copia.Filas())
               .arg(copia.Origen(), copia.Destino()),
           Msg::Information, kCopiarTitle);
}

void frmBaseDatos::avance(qint64 hechas, qint64 total, const QString& estado)
{
    Field& pb = field(QStringLiteral("pb"));
    Field& lbl = field(QStringLiteral("lbl"));
    pb.setVisible(true);
    lbl.setVisible(true);
    pb.setValue(total > 0 ? int(hechas * 100 / total) : 0);
    lbl.setText(estado);
    ui().yield();
}
