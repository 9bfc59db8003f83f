#include "CopiaBaseDatos.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "PostgresDatabase.h"
#include "ServerBackup.h"
#include "SqliteDatabase.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "database/SqlHelpers.h"

namespace {

using Kind = DatabaseConnection::Kind;

// Rows between two reports of progress.
constexpr qint64 kFilasPorAviso = 5000;

// The name the target file is written under until it is whole.
QString parcialDe(const QString& path)
{
    return path + QStringLiteral(".parcial");
}

void borrarArchivo(const QString& path)
{
    for (const char* extra : {"", "-wal", "-shm", "-journal"})
        QFile::remove(path + QLatin1String(extra));
}

// Why a write failed, in the person's words where the cause is known (a
// full disk, a read-only file), else as the engine said it.
QString causa()
{
    const QString prefix = QStringLiteral("No se pudo guardar: ");
    QString text = SaveFailureText(ZoAccess::LastErrorCode(), ZoAccess::LastError());
    if (text.startsWith(prefix))
        text.remove(0, prefix.size());
    return text;
}

QString marcas(int n)
{
    QStringList marks;
    for (int i = 0; i < n; ++i)
        marks << QStringLiteral("?");
    return marks.join(QStringLiteral(", "));
}

} // namespace

QString CopiaBaseDatos::Archivo(const QString& path)
{
    return QStringLiteral("Provider=SQLite;Data Source=") + path + u';';
}

QString CopiaBaseDatos::Servidor(const DatabaseLocation& location)
{
    return QStringLiteral("Provider=PostgreSQL;Data Source=") + location.connectionInfo() + u';';
}

CopiaBaseDatos::CopiaBaseDatos(QString origen, QString destino)
    : m_origen(std::move(origen)), m_destino(std::move(destino))
{
}

QString CopiaBaseDatos::Origen() const
{
    ZoAccess db;
    db.SetConnectionString(m_origen);
    return db.Describe();
}

QString CopiaBaseDatos::Destino() const
{
    ZoAccess db;
    db.SetConnectionString(m_destino);
    return db.Describe();
}

bool CopiaBaseDatos::Copiar()
{
    m_tablas = 0;
    m_filas = 0;
    m_total = 0;
    m_motivo.clear();
    ZoAccess origen;
    origen.SetConnectionString(m_origen);
    if (!origenUsable(origen))
        return false;
    bool leida = false;
    QStringList tablas = origen.TableNames(&leida);
    // The engine's own tables (statistics) are no part of the data.
    tablas.removeIf([](const QString& t) { return t.startsWith(QStringLiteral("sqlite_")); });
    if (!leida)
        return falla(QStringLiteral("No se pudo leer la base de datos ") + Origen() +
                     QStringLiteral(": ") + causa());

    ZoAccess destino;
    destino.SetConnectionString(m_destino);
    if (destino.OnServer())
        return destinoVacio(destino) && copiarEn(origen, destino, tablas);

    // A file is written under a name of its own, and takes its name only
    // when the copy is whole.
    const QString path = destino.DatabasePath();
    const QFileInfo carpeta(QFileInfo(path).absolutePath());
    if (QFileInfo::exists(path))
        return falla(QStringLiteral("El archivo ") + path +
                     QStringLiteral(" ya existe. La copia se hace solo en un archivo nuevo: "
                                    "elija otro nombre."));
    if (!carpeta.isDir() || !carpeta.isWritable())
        return falla(QStringLiteral("No se puede escribir en la carpeta ") +
                     carpeta.absoluteFilePath() + u'.');
    const QString parcial = parcialDe(path);
    borrarArchivo(parcial);
    destino.SetConnectionString(Archivo(parcial));
    bool ok = copiarEn(origen, destino, tablas);
    SqliteDatabase::close(parcial);
    if (ok && !QFile::rename(parcial, path))
        ok = falla(QStringLiteral("No se pudo crear el archivo ") + path + u'.');
    if (!ok)
        borrarArchivo(parcial);
    return ok;
}

bool CopiaBaseDatos::origenUsable(ZoAccess& origen)
{
    if (!origen.OnServer() && !QFileInfo(origen.DatabasePath()).isFile())
        return falla(QStringLiteral("No existe el archivo ") + origen.DatabasePath() + u'.');
    switch (origen.DatabaseKind()) {
    case Kind::Own: return true;
    case Kind::New:
        return falla(QStringLiteral("La base de datos ") + Origen() +
                     QStringLiteral(" no tiene tablas: no hay nada que copiar."));
    case Kind::Foreign:
        return falla(QStringLiteral("La base de datos ") + Origen() +
                     QStringLiteral(" no es una base de datos de Morvel."));
    case Kind::Unreadable: break;
    }
    if (origen.OnServer())
        return falla(QStringLiteral("No se pudo conectar con la base de datos ") + Origen() +
                     QStringLiteral(": ") +
                     ServerBackup::FailureText(PostgresDatabase::connectError()));
    return falla(QStringLiteral("El archivo ") + Origen() +
                 QStringLiteral(" está dañado o no es una base de datos."));
}

bool CopiaBaseDatos::destinoVacio(ZoAccess& destino)
{
    const Kind kind = destino.DatabaseKind();
    if (kind == Kind::New)
        return true;
    if (kind == Kind::Unreadable)
        return falla(QStringLiteral("No se pudo conectar con la base de datos ") + Destino() +
                     QStringLiteral(": ") +
                     ServerBackup::FailureText(PostgresDatabase::connectError()));
    return falla(QStringLiteral("La base de datos ") + Destino() +
                 QStringLiteral(" del servidor no está vacía: ya tiene tablas. La copia se hace "
                                "solo en una base de datos vacía."));
}

bool CopiaBaseDatos::copiarEn(ZoAccess& origen, ZoAccess& destino, const QStringList& tablas)
{
    for (const QString& tabla : tablas)
        m_total += qMax(0, origen.GetLong(QStringLiteral("SELECT COUNT(*) FROM ") + tabla));
    avanzar(QStringLiteral("Creando las tablas..."));
    // Harmless failures of the schema step (a statement of an upgrade that
    // finds its work done) do not stop the copy: what it must stop for is
    // told by each step, which then undoes the unit.
    Transaction unidad(destino, Transaction::Mode::KeepWhatPassed);
    if (!unidad.failure().isEmpty())
        return falla(QStringLiteral("No se pudo escribir en ") + Destino() + QStringLiteral(": ") +
                     causa());
    CreateCurrentDatabase(destino);
    bool ok = vaciarDestino(destino);
    for (int i = 0; ok && i < tablas.size(); ++i)
        ok = copiarTabla(origen, destino, tablas.at(i));
    if (ok && destino.OnServer())
        ok = numerarContadores(destino);
    if (!ok) {
        unidad.rollback();
        return false;
    }
    avanzar(QStringLiteral("Confirmando la copia..."));
    if (!unidad.commit())
        return falla(QStringLiteral("No se pudo confirmar la copia en ") + Destino() +
                     QStringLiteral(": ") + causa());
    return true;
}

// The tables the schema step made hold its catalogue rows: the source's
// take their place.
bool CopiaBaseDatos::vaciarDestino(ZoAccess& destino)
{
    bool leida = false;
    const QStringList tablas = destino.TableNames(&leida);
    if (!leida || tablas.isEmpty())
        return falla(QStringLiteral("No se pudieron crear las tablas en ") + Destino() +
                     QStringLiteral(": ") + causa());
    for (const QString& tabla : tablas)
        if (!RunChecked(destino, QStringLiteral("DELETE * FROM ") + tabla))
            return falla(QStringLiteral("No se pudo preparar la tabla ") + tabla +
                         QStringLiteral(": ") + causa());
    return true;
}

bool CopiaBaseDatos::copiarTabla(ZoAccess& origen, ZoAccess& destino, const QString& tabla)
{
    const RecordsetPtr filas = origen.FillRecordSet(QStringLiteral("SELECT * FROM ") + tabla);
    if (!filas)
        return falla(QStringLiteral("No se pudo leer la tabla ") + tabla + QStringLiteral(" de ") +
                     Origen() + QStringLiteral(": ") + ZoAccess::LastError());
    const QStringList columnas = columnasDestino(destino, tabla, filas->FieldNames());
    if (columnas.isEmpty())
        return false;
    if (filas->RecordCount() > 0) {
        const auto insert =
            destino.Prepare(QStringLiteral("INSERT INTO ") + tabla + QStringLiteral(" (") +
                            columnas.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
                            marcas(int(columnas.size())) + u')');
        if (!insert)
            return falla(QStringLiteral("No se pudo copiar la tabla ") + tabla +
                         QStringLiteral(": ") + causa());
        for (const auto& fila : filas->rows()) {
            if (!insert->run(fila))
                return falla(QStringLiteral("No se pudo copiar la tabla ") + tabla +
                             QStringLiteral(": ") + causa());
            if (++m_filas % kFilasPorAviso == 0)
                avanzar(QStringLiteral("Copiando ") + tabla + QStringLiteral("..."));
        }
    }
    origen.Dispose();
    ++m_tablas;
    avanzar(QStringLiteral("Copiando ") + tabla + QStringLiteral("..."));
    return true;
}

// The target's spelling of each of the source's columns. A table or a
// column that the schema of this program does not have (left by an older
// release, or added by hand) is kept all the same, as text.
QStringList CopiaBaseDatos::columnasDestino(ZoAccess& destino, const QString& tabla,
                                            const QStringList& columnas)
{
    const QStringList presentes = TableColumns(destino, tabla);
    if (presentes.isEmpty()) {
        QStringList definicion;
        for (const QString& columna : columnas)
            definicion << columna + QStringLiteral(" TEXT(255)");
        if (RunChecked(destino, QStringLiteral("CREATE TABLE ") + tabla + QStringLiteral(" (") +
                                    definicion.join(QStringLiteral(", ")) + u')'))
            return columnas;
        falla(QStringLiteral("No se pudo crear la tabla ") + tabla + QStringLiteral(": ") +
              causa());
        return {};
    }
    QStringList nombres;
    for (const QString& columna : columnas) {
        const auto it = std::find_if(presentes.begin(), presentes.end(), [&](const QString& p) {
            return p.compare(columna, Qt::CaseInsensitive) == 0;
        });
        if (it != presentes.end()) {
            nombres << *it;
            continue;
        }
        if (!RunChecked(destino, QStringLiteral("ALTER TABLE ") + tabla +
                                     QStringLiteral(" ADD COLUMN ") + columna +
                                     QStringLiteral(" TEXT(255)"))) {
            falla(QStringLiteral("No se pudo copiar la columna ") + columna +
                  QStringLiteral(" de la tabla ") + tabla + QStringLiteral(": ") + causa());
            return {};
        }
        nombres << columna;
    }
    return nombres;
}

// A server numbers new rows from its own counters, which know nothing of the
// ids copied: each is set past the highest.
bool CopiaBaseDatos::numerarContadores(ZoAccess& destino)
{
    const RecordsetPtr contadores = destino.FillRecordSet(
        QStringLiteral("SELECT table_name, column_name FROM information_schema.columns WHERE "
                       "table_schema = current_schema() AND is_identity = 'YES'"));
    if (!contadores)
        return falla(QStringLiteral("No se pudieron leer los contadores de ") + Destino() +
                     QStringLiteral(": ") + causa());
    for (const auto& fila : contadores->rows()) {
        const QString tabla = fila.value(0).toString();
        const QString columna = fila.value(1).toString();
        if (!RunChecked(destino, QStringLiteral("SELECT setval(pg_get_serial_sequence('%1', '%2'), "
                                                "COALESCE(MAX(%2), 0) + 1, false) FROM %1")
                                     .arg(tabla, columna)))
            return falla(QStringLiteral("No se pudo ajustar el contador de la tabla ") + tabla +
                         QStringLiteral(": ") + causa());
    }
    return true;
}

void CopiaBaseDatos::avanzar(const QString& estado)
{
    if (OnAvance)
        OnAvance(m_filas, m_total, estado);
}

bool CopiaBaseDatos::falla(const QString& motivo)
{
    m_motivo = motivo;
    m_tablas = 0;
    m_filas = 0;
    return false;
}
