#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "DatabaseLocation.h"

class ZoAccess;

// The whole database of this program copied from where it lives to another
// place: a file (the data folder's Morvel.db) into an empty database of a
// firm's server, or a server's database into a new file. The target gets the
// tables of the current level, made by the same schema step as a first
// start, and then every row of every table of the source, Opciones included,
// so that it stands at the source's level of upgrades; a server's counters
// are set past the ids copied.
//
// The copy is one transaction on the target, and a file target is written
// under a name of its own and put in place only when whole: whatever stops
// it, the target is left as it was (an empty database, no file) and the
// source is only read. A server database that holds tables, or a file that
// exists, is never written.
class CopiaBaseDatos
{
public:
    // How far the copy went: rows copied, rows in all, and what it is doing.
    using Avance = std::function<void(qint64 hechas, qint64 total, const QString& estado)>;

    // The gateway's connection text for a file and for a server's database.
    static QString Archivo(const QString& path);
    static QString Servidor(const DatabaseLocation& location);

    CopiaBaseDatos(QString origen, QString destino);

    // Told after every table and every few thousand rows.
    Avance OnAvance;

    // Makes the copy; false, with why in Motivo(), when nothing was copied.
    bool Copiar();

    int Tablas() const { return m_tablas; }
    qint64 Filas() const { return m_filas; }
    QString Motivo() const { return m_motivo; }
    // What the person reads of the source and the target: a file's path, or
    // "base en servidor:puerto (usuario)".
    QString Origen() const;
    QString Destino() const;

private:
    bool origenUsable(ZoAccess& origen);
    bool destinoVacio(ZoAccess& destino);
    bool copiarEn(ZoAccess& origen, ZoAccess& destino, const QStringList& tablas);
    bool vaciarDestino(ZoAccess& destino);
    bool copiarTabla(ZoAccess& origen, ZoAccess& destino, const QString& tabla);
    QStringList columnasDestino(ZoAccess& destino, const QString& tabla,
                                const QStringList& columnas);
    bool numerarContadores(ZoAccess& destino);
    void avanzar(const QString& estado);
    bool falla(const QString& motivo);

    QString m_origen;
    QString m_destino;
    int m_tablas = 0;
    qint64 m_filas = 0;
    qint64 m_total = 0;
    QString m_motivo;
};
