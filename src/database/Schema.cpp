#include "Schema.h"

#include <QSet>

#include "BaseSchema.h"
#include "Catalogue.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "ProgressWindow.h"
#include "SqlHelpers.h"
#include "PostgresDatabase.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Upgrade.h"
#include "ZoAccess.h"

namespace {

const QString kSource = QStringLiteral("Schema");

// The keys the forms, the tree and the registry filter by. A declaration and
// its lines are found by Codigo, FechaRectificativa and ctrl; the tree, the
// period copy and the agents' returns by Padron, Objeto and Periodo; premises
// and activities by CUIT.
struct Index {
    const char* table;
    const char* columns;
};

const Index kIndices[] = {
    {"F976", "Codigo, FechaRectificativa, ctrl"},
    {"F976", "Padron, Objeto, Periodo"},
    {"F2001", "Codigo, FechaRectificativa, ctrl"},
    {"F2001", "Padron, Objeto, Periodo"},
    {"F977", "Codigo, FechaRectificativa, ctrl"},
    {"F977", "Padron, Objeto, Periodo"},
    {"F978", "Codigo, FechaRectificativa, ctrl"},
    {"F978", "Padron, Objeto, Periodo"},
    {"F985", "Codigo, FechaRectificativa, ctrl"},
    {"F985", "Padron, Objeto, Periodo"},
    {"F987", "Codigo, FechaRectificativa, ctrl"},
    {"F987", "Padron, Objeto, Periodo"},
    {"F986", "Padron, Objeto, Periodo"},
    {"F988", "Padron, Objeto, Periodo"},
    {"F976_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"F2001_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"F977_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"F978_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"F985_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"F987_Detalle", "Codigo, FechaRectificativa, ctrl"},
    {"TPadrones_Formularios", "Padron, Objeto, Periodo"},
    {"tPadronesComerciales", "padron, objeto"},
    {"tPadronesComerciales", "cuit"},
    {"Actividades_x_padrones", "padron, objeto"},
    {"Actividades_x_padrones", "cuit"},
    {"Contribuyentes", "Cuit"},
};

QString indexName(const QString& table, const QString& columns)
{
    QString name = QStringLiteral("ix_") + table;
    for (const QString& c : columns.split(u','))
        name += u'_' + c.trimmed();
    return name;
}

using Kind = DatabaseConnection::Kind;

bool ownOrNew(ZoAccess& db)
{
    const Kind kind = db.DatabaseKind();
    return kind == Kind::New || kind == Kind::Own;
}

} // namespace

bool IsOwnDatabase()
{
    ZoAccess& db = gAccess();
    const QString path = db.Describe();
    const bool server = db.OnServer();
    QString why;
    switch (db.DatabaseKind()) {
    case Kind::New:
    case Kind::Own: return true;
    case Kind::Foreign:
        why = QStringLiteral("no es una base de datos de Morvel: pertenece a otro programa.");
        break;
    case Kind::Unreadable:
        why = server ? QStringLiteral("no responde: ") + PostgresDatabase::connectError()
                     : QStringLiteral("está dañado o no es una base de datos.");
        break;
    }
    const QString text = (server ? QStringLiteral("La base de datos ") : QStringLiteral("El archivo ")) +
                         path + u' ' + why +
                         QStringLiteral("\r\nNo se modificará. El programa se cerrará.");
    LogError(QStringLiteral("-1"), text, kSource);
    MsgBox(text, Msg::Critical, QStringLiteral("Atención !"));
    return false;
}

bool WritableDatabase()
{
    if (!gAccess().ReadOnly())
        return true;
    MsgBox(QStringLiteral("La base de datos ") + gAccess().Describe() +
               QStringLiteral(" es de solo lectura: podrá consultar los datos, pero no se "
                              "guardará ningún cambio."),
           Msg::Exclamation, QStringLiteral("Atención !"));
    return false;
}

void MarkDatabase()
{
    MarkDatabase(gAccess());
}

void MarkDatabase(ZoAccess& db)
{
    if (!db.MarkAsOwn())
        LogError(QStringLiteral("-1"),
                 QStringLiteral("No se pudo marcar la base de datos: ") + db.Describe(), kSource);
}

bool EnsureBaseSchema()
{
    return EnsureBaseSchema(gAccess());
}

bool EnsureBaseSchema(ZoAccess& db)
{
    const QString tables = TableCount(db);
    if (tables.isEmpty()) {
        // Not a database (or not readable): it is left exactly as it is.
        LogError(QStringLiteral("-1"),
                 QStringLiteral("El archivo no es una base de datos: ") + db.Describe(),
                 kSource);
        return false;
    }
    if (tables != QLatin1String("0"))
        return true;

    // All or nothing: a base that stopped half way would have tables, and the
    // next start would take it for an installed one and never finish it.
    Transaction unit(db, Transaction::Mode::AllOrNothing);
    QStringList statements = BaseSchemaStatements();
    statements << CatalogueStatements();
    for (int i = 0; unit.ok() && i < statements.size(); ++i) {
        if (!RunChecked(db, statements.at(i)))
            LogError(QStringLiteral("-1"),
                     QStringLiteral("No se pudo crear la base de datos; nada quedó escrito.\n") +
                         statements.at(i),
                     kSource);
    }
    if (unit.commit())
        return true;
    // A first start on a full disk, say: the person learns why the program
    // opens empty.
    MsgBox(QStringLiteral("No se pudo crear la base de datos ") + db.Describe() +
               QStringLiteral(".\r\n") + unit.failure(),
           Msg::Critical, QStringLiteral("Atención !"));
    return false;
}

void EnsureIndices()
{
    EnsureIndices(gAccess());
}

void EnsureIndices(ZoAccess& db)
{
    // Only on tables that are there: a damaged or very old file lacks some,
    // and a statement that is bound to fail would only fill the daily log.
    QSet<QString> present;
    bool read = false;
    for (const QString& table : db.TableNames(&read))
        present.insert(table.toLower());
    if (!read)
        return;
    for (const Index& index : kIndices) {
        const QString table = QString::fromLatin1(index.table);
        if (!present.contains(table.toLower()))
            continue;
        const QString columns = QString::fromLatin1(index.columns);
        db.Execute(QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)")
                       .arg(indexName(table, columns), table, columns));
    }
}

void CreateCurrentDatabase()
{
    CreateCurrentDatabase(gAccess());
}

void CreateCurrentDatabase(ZoAccess& db)
{
    // Another program's file, a file that is not a database, or a base that
    // could not be made, is left alone.
    if (!ownOrNew(db) || !EnsureBaseSchema(db))
        return;
    ProgressWindow splash(QStringLiteral("Inicial"));
    VerifyDatabase(db, splash);
    ApplyUpgrades(db, splash);
    UpgradeAddGuidColumns(db);
    EnsureIndices(db);
    MarkDatabase(db);
}
