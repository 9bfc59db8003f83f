#pragma once

#include "Controller.h"
#include "DatabaseLocation.h"

// "Base de Datos": where this workstation's database lives, the file of the
// data folder or a firm's PostgreSQL server, with a test of the connection.
// The choice is kept in the settings and takes effect at the next start; a
// server's password goes to the person's password file (PgPass), never to
// the settings. The data folder's file can be copied into an empty database
// of the server, and the server's database into a new file.
class frmBaseDatos : public Controller
{
    Q_OBJECT
public:
    frmBaseDatos() : Controller(QStringLiteral("frmBaseDatos")) {}

    // How long the test waits for a server that does not answer.
    static constexpr int kTimeoutSeconds = 5;

    // Connects to the server once with `password` (the password file's when
    // empty) and says how it went: "Conexión correcta." or "No se pudo
    // conectar con el servidor: " and why. `ok` tells which.
    static QString ProbarConexion(const DatabaseLocation& location, const QString& password,
                                  bool* ok = nullptr);

    // The location the fields describe.
    DatabaseLocation Eleccion();

protected:
    void design() override;
    void onLoad() override;

private:
    void designServer();
    void enableServer();
    bool complete();
    void probar();
    void aceptar();
    bool guardarContrasena(const DatabaseLocation& location);
    void copiarAlServidor();
    void copiarAArchivo();
    void copiar(const QString& origen, const QString& destino);
    void avance(qint64 hechas, qint64 total, const QString& estado);
};
