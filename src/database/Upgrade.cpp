#include "Upgrade.h"

#include <QVector>

#include "Catalogue.h"
#include "ErrorLog.h"
#include "Field.h"
#include "Globals.h"
#include "ProgressWindow.h"
#include "Numbers.h"
#include "SqlHelpers.h"
#include "UiPort.h"
#include "Transaction.h"
#include "ZoAccess.h"

namespace {

const QString kSource = QStringLiteral("Upgrade");

// The bar of the verification: its steps, one after each item.
constexpr int kVerifySteps = 24;

const QString kReportColumns = QStringLiteral(
    "(PADRON TEXT(50),DOMICILIO TEXT(255),PERIODO TEXT(50),RECTIFICATIVA TEXT(50),"
    "TOTALPERCEPCIONES TEXT(50),FECHARECTIFICATIVA TEXT(50),CODIGO TEXT(50),FECHA TEXT(50),"
    "TIPOCOMPROBANTE TEXT(50),NROCOMPROBANTE TEXT(50),DENOMINACION TEXT(100),CUIT TEXT(50),"
    "IMPORTEPERCIBIDO TEXT(50),RAZON_SOCIAL TEXT(255),CP TEXT(50))");

const QString kActivitiesRead = QStringLiteral("SELECT TOP 1 * FROM Actividades_x_padrones");
// The level before Act4 and Act5.
constexpr int kOldActivityFields = 11;

const QString kOne = QStringLiteral("1");

void step(ProgressWindow& splash)
{
    AdvanceSplash(splash, 1, QString());
}

// The statements below are issued again on every start, and fail harmlessly
// once their table or column is there. They are issued only when the table
// or column is not known to be there: the result is the same, and the daily
// log keeps only the failures that mean something.
void createTable(ZoAccess& db, const QString& table, const QString& sql)
{
    if (TableExists(db, table) != kOne)
        db.Execute(sql);
}

void addColumns(ZoAccess& db, const QString& table, const QStringList& columns, const QString& sql)
{
    for (const QString& column : columns)
        if (ColumnExists(db, table, column) != kOne) {
            db.Execute(sql);
            return;
        }
}

QString formRow(const QString& form, const QString& nombre)
{
    return QStringLiteral("(%1, %2, %3, %4)")
        .arg(Quoted(form), Quoted(nombre), Quoted(LeyendaNuevo(nombre)),
             Quoted(LeyendaGenerado(nombre)));
}

QString renameForm(const QString& form, const QString& nombre)
{
    return QStringLiteral("UPDATE Formularios SET Nombre = %1, LeyendaNuevo = %2, "
                          "LeyendaGenerado = %3 WHERE idFormulario = %4")
        .arg(Quoted(nombre), Quoted(LeyendaNuevo(nombre)), Quoted(LeyendaGenerado(nombre)),
             Quoted(form));
}

// A guard read through GetString, and what runs when it does not give "1".
struct Seed {
    QString guard;
    QStringList actions;
};

QVector<Seed> seeds()
{
    const QString f985 =
        QStringLiteral("T.I.S.S.H. Anexo Informativo de Retenciones Realizadas: F985");
    const QString f987 =
        QStringLiteral("T.I.S.S.H. Anexo Informativo de Percepciones Realizadas: F987");
    const QString insertForm = QStringLiteral(
        "INSERT INTO Formularios (idFormulario, Nombre, LeyendaNuevo, LeyendaGenerado) VALUES ");
    const QString insertCode =
        QStringLiteral("INSERT INTO tCodigos_Formularios (Id, idFormulario, tipo_imponible, "
                       "impuesto_concepto, codigo_formulario) VALUES ");

    // The order of the forms in the tree.
    const QStringList order = {QStringLiteral("F976"), QStringLiteral("F2001"),
                               QStringLiteral("F978"), QStringLiteral("F977"),
                               QStringLiteral("F988"), QStringLiteral("F987"),
                               QStringLiteral("F986"), QStringLiteral("F985")};
    QStringList orderUpdates;
    for (int i = 0; i < order.size(); ++i)
        orderUpdates << QStringLiteral(
                            "UPDATE Formularios SET Orden = %1 WHERE idFormulario = '%2'")
                            .arg(i + 1)
                            .arg(order.at(i));

    return {
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F985'"),
         {insertForm + formRow(QStringLiteral("F985"), f985)}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F987'"),
         {insertForm + formRow(QStringLiteral("F987"), f987)}},
        {QStringLiteral("SELECT 1 FROM tCodigos_Formularios WHERE idFormulario = 'F985'"),
         {insertCode + QStringLiteral("(7, 'F985', '0008', '0015-0010', '0085')")}},
        {QStringLiteral("SELECT 1 FROM tCodigos_Formularios WHERE idFormulario = 'F987'"),
         {insertCode + QStringLiteral("(8, 'F987', '0008', '0024-0011', '0087')")}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F977' AND "
                        "INSTR(Nombre, 'Deducidas') <> 0"),
         {renameForm(QStringLiteral("F977"),
                     QStringLiteral("T.I.S.S.H. Anexo Retenciones Deducidas: F977"))}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F978' AND "
                        "INSTR(Nombre, 'Deducidas') <> 0"),
         {renameForm(QStringLiteral("F978"),
                     QStringLiteral("T.I.S.S.H. Anexo Percepciones Deducidas: F978"))}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F985' AND "
                        "INSTR(Nombre, 'Realizadas') <> 0"),
         {renameForm(QStringLiteral("F985"), f985)}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE idFormulario = 'F987' AND "
                        "INSTR(Nombre, 'Realizadas') <> 0"),
         {renameForm(QStringLiteral("F987"), f987)}},
        {QStringLiteral("SELECT 1 FROM Formularios WHERE Orden is not null"), orderUpdates},
    };
}

// A ";" in an activity name would cut a line of the submission file: it
// becomes ",". `count` and `read` find the rows, `update` takes the new text
// and the key.
void replaceSemicolons(ZoAccess& db, const QString& count, const QString& read,
                       const QString& textColumn, const QString& keyColumn, const QString& update,
                       const QString& where)
{
    // GetLong rather than a 16-bit count: beyond 32767 rows the count would
    // read -1 and the repair would be skipped.
    if (db.GetLong(count) <= 0)
        return;
    RecordsetPtr rs = db.FillRecordSet(read);
    if (!rs)
        return;
    QVector<QPair<QString, QString>> rows;
    for (; !rs->EOF_(); rs->MoveNext())
        rows.push_back({rs->Text(textColumn), rs->Text(keyColumn)});
    db.Dispose();
    for (const auto& [text, key] : rows) {
        QString fixed = text;
        fixed.replace(u';', u',');
        db.Execute(update + Quoted(fixed) + where + key);
    }
}

// The tables and columns that hold amounts, in the order they are converted.
// SaldoAFavorF of F976 is left out on purpose.
struct AmountTable {
    const char* table;
    const char* columns;
};

const AmountTable kAmountTables[] = {
    {"F2001", "BaseImponible, Impuesto, Total, SaldoAFavor, Retenciones, Percepciones, "
              "Desgrabaciones, SubtotalCol12, SubtotalColumna2, DiferenciaCol12, "
              "DiferenciaColumna2, PagoACuenta, TotalAPagar"},
    {"F2001_Detalle", "BaseImponible, Alicuota, Impuesto"},
    {"F976", "BaseImponible, Impuesto, Accesorios, Multas, PagoACuenta, Percepciones, "
             "Retenciones, SaldoAFavor, SubtotalDeterminado, TotalAPagar, Tasa"},
    {"F976_Detalle", "BaseImponible, Alicuota, Impuesto"},
    {"F977", "Transporte, TotalPercepciones"},
    {"F977_Detalle", "ImportePercibido"},
    {"F977_Detalle_Reporte", "ImportePercibido"},
    {"F978", "Transporte, TotalPercepciones"},
    {"F978_Detalle", "ImportePercibido"},
    {"F978_Detalle_Reporte", "ImportePercibido"},
    {"F985", "Transporte, TotalPercepciones"},
    {"F985_Detalle", "ImportePercibido"},
    {"F985_Detalle_Reporte", "ImportePercibido"},
    {"F986", "ImpPercibidoF985, AccesoriosCoef, Multas, Otros, ImporteDepositar"},
    {"F987", "Transporte, TotalPercepciones"},
    {"F987_Detalle", "ImportePercibido"},
    {"F987_Detalle_Reporte", "ImportePercibido"},
    {"F988", "ImpPercibidoF987, AccesoriosCoef, Multas, Otros, ImporteDepositar"},
    {"tMenores", "Codigo"},
};

struct Conversion {
    QString table;
    QStringList columns; // those of the list the table really has
    int rows = 0;
};

QStringList listed(const AmountTable& t)
{
    QStringList out;
    for (const QString& c : QString::fromLatin1(t.columns).split(u','))
        out << c.trimmed();
    return out;
}

void logConversion(const QString& description)
{
    LogError(QStringLiteral("-1"), description, kSource);
}

// Rewrites the amounts of every table, and records that it did, in one
// transaction. This is deliberate: a value converted twice comes out wrong
// ("1.234,50" would become "1,23"), so either every table is converted and
// the flag written with it, or, after a failure anywhere, nothing is, and the
// next start begins again from a database that holds only dotted amounts.
bool convertAll(ZoAccess& db, ProgressWindow& splash, const QVector<Conversion>& work)
{
    Transaction unit(db, Transaction::Mode::AllOrNothing);
    if (!unit.ok()) {
        logConversion(QStringLiteral("PuntoPorComa: no se pudo iniciar la transacción."));
        return false;
    }
    auto fail = [&](const QString& what) {
        unit.rollback();
        logConversion(QStringLiteral("PuntoPorComa: ") + what +
                      QStringLiteral("; no se convirtió ningún importe."));
        return false;
    };
    for (const Conversion& c : work) {
        if (c.columns.isEmpty()) {
            AdvanceSplash(splash, c.rows, QString());
            continue;
        }
        RecordsetPtr rs = db.FillRecordSet(QStringLiteral("SELECT rowid, ") +
                                           c.columns.join(QStringLiteral(", ")) +
                                           QStringLiteral(" FROM ") + c.table);
        if (!rs)
            return fail(QStringLiteral("no se pudo leer ") + c.table);
        for (; !rs->EOF_(); rs->MoveNext()) {
            QStringList sets;
            for (int i = 1; i < rs->FieldCount(); ++i) {
                if (rs->IsNull(i))
                    continue; // Null stays Null
                const QString stored = rs->Text(i);
                const QString converted = CommaDecimalFromDotted(stored);
                if (converted != stored)
                    sets << c.columns.at(i - 1) + QStringLiteral(" = ") + Quoted(converted);
            }
            if (!sets.isEmpty() &&
                !RunChecked(db, QStringLiteral("UPDATE ") + c.table + QStringLiteral(" SET ") +
                                    sets.join(QStringLiteral(", ")) +
                                    QStringLiteral(" WHERE rowid = ") + Quoted(rs->Text(0))))
                return fail(QStringLiteral("no se pudo escribir ") + c.table);
            AdvanceSplash(splash, 1, QString());
        }
        db.Dispose();
    }
    if (!RunChecked(db, QStringLiteral(
                            "INSERT INTO Opciones (Nombre, Valor) VALUES ('PuntoPorComa', 'S')")))
        return fail(QStringLiteral("no se pudo registrar la conversión"));
    if (!unit.commit())
        return fail(QStringLiteral("no se pudo confirmar la transacción"));
    return true;
}

} // namespace

void VerifyDatabase(const QString& databasePath, ProgressWindow& splash)
{
    ZoAccess db;
    if (!databasePath.isEmpty())
        db.SetConnectionString(DefaultConnectionString(databasePath));
    VerifyDatabase(db, splash);
}

void VerifyDatabase(ZoAccess& db, ProgressWindow& splash)
{
    splash.field(QStringLiteral("pb")).setMaximum(kVerifySteps);

    // The agents' annexes, their lines and their print staging.
    for (const QString& form : {QStringLiteral("F985"), QStringLiteral("F987")}) {
        createTable(db, form,
                    QStringLiteral("CREATE TABLE ") + form +
                        QStringLiteral(" (Id Counter NOT NULL PRIMARY KEY,Codigo TEXT(50),"
                                       "Padron TEXT(50),Objeto TEXT(50),Domicilio TEXT(100),"
                                       "RazonSocial TEXT(100),Periodo TEXT(50),"
                                       "Rectificativa TEXT(50),FechaRectificativa TEXT(50),"
                                       "Transporte TEXT(100),TotalPercepciones TEXT(50),"
                                       "ctrl TEXT(50))"));
        step(splash);
        createTable(db, form + QStringLiteral("_Detalle"),
                    QStringLiteral("CREATE TABLE ") + form +
                        QStringLiteral("_Detalle (Id Counter NOT NULL PRIMARY KEY,"
                                       "Codigo TEXT(50),FechaRectificativa TEXT(50),"
                                       "CodigoDetalle TEXT(50),Fecha TEXT(50),"
                                       "TipoComprobante TEXT(50),NroComprobante TEXT(50),"
                                       "Denominacion TEXT(50),Cuit TEXT(50),Padron TEXT(50),"
                                       "ImportePercibido TEXT(50),ctrl TEXT(50))"));
        step(splash);
        createTable(db, form + QStringLiteral("_DETALLE_REPORTE"),
                    QStringLiteral("CREATE TABLE ") + form + QStringLiteral("_DETALLE_REPORTE") +
                        kReportColumns);
        step(splash);
    }

    // Kept by the database, though nothing reads or writes it.
    createTable(db, QStringLiteral("Configuracion_Regional"),
                QStringLiteral("CREATE TABLE Configuracion_Regional(iCurrDigits TEXT(50),"
                               "iCurrency TEXT(50),iDigits TEXT(50),iLZero TEXT(50),"
                               "iMeasure TEXT(50),iNegCurr TEXT(50),iTLZero TEXT(50),"
                               "sDecimal TEXT(50),sMonDecimalSep TEXT(50),"
                               "sMonThousandSep TEXT(50),sNativeDigits TEXT(50),"
                               "sNegativeSign TEXT(50),sThousand TEXT(50))"));
    step(splash);
    createTable(db, QStringLiteral("F978_DETALLE_REPORTE"),
                QStringLiteral("CREATE TABLE F978_DETALLE_REPORTE") + kReportColumns);
    step(splash);

    for (const QString& table :
         {QStringLiteral("F977_DETALLE_REPORTE"), QStringLiteral("F978_DETALLE_REPORTE"),
          QStringLiteral("F985_DETALLE_REPORTE"), QStringLiteral("F987_DETALLE_REPORTE")}) {
        db.Execute(QStringLiteral("ALTER TABLE ") + table +
                   QStringLiteral(" ALTER COLUMN DOMICILIO TEXT(255)"));
        db.Execute(QStringLiteral("ALTER TABLE ") + table +
                   QStringLiteral(" ALTER COLUMN RAZON_SOCIAL TEXT(255)"));
    }
    step(splash);

    addColumns(
        db, QStringLiteral("tPadronesComerciales"),
        {QStringLiteral("Principal"), QStringLiteral("Suscriptor"), QStringLiteral("Caracter")},
        QStringLiteral("ALTER TABLE tPadronesComerciales ADD COLUMN Principal TEXT(50), "
                       "Suscriptor TEXT(100), Caracter TEXT(100)"));
    step(splash);
    addColumns(db, QStringLiteral("Formularios"), {QStringLiteral("Orden")},
               QStringLiteral("ALTER TABLE Formularios ADD COLUMN Orden INTEGER"));
    step(splash);

    for (const Seed& seed : seeds()) {
        if (db.GetString(seed.guard) != kOne)
            for (const QString& sql : seed.actions)
                db.Execute(sql);
        step(splash);
    }

    // Activities 4 and 5 of a premises. The message keeps its words, but the
    // program goes on: the premises screen then fails on those fields alone.
    RecordsetPtr rs = db.FillRecordSet(kActivitiesRead);
    step(splash);
    if (rs && rs->FieldCount() == kOldActivityFields) {
        rs->Close();
        db.Dispose();
        db.Execute(QStringLiteral("ALTER TABLE Actividades_x_padrones ADD COLUMN Act4 Text(50), "
                                  "Act4_Desc Text(250), Act5 Text(50), Act5_Desc Text(250)"));
        rs = db.FillRecordSet(kActivitiesRead);
        if (!rs || rs->FieldCount() == kOldActivityFields)
            MsgBox(QStringLiteral("Se produjo un error al intentar alterar la Base de Datos.\n"
                                  "La aplicación se cerrará."),
                   Msg::Critical);
    }
    db.Dispose();
    step(splash);

    replaceSemicolons(
        db,
        QStringLiteral("SELECT COUNT(*) FROM tActividades WHERE INSTR(tActividades.Nombre, "
                       "';') <> 0"),
        QStringLiteral("SELECT idTActividad, Nombre FROM tActividades WHERE "
                       "INSTR(tActividades.Nombre, ';') <> 0"),
        QStringLiteral("Nombre"), QStringLiteral("idTActividad"),
        // SQLite takes no table name before the column in SET.
        QStringLiteral("UPDATE tActividades SET Nombre = "),
        QStringLiteral(" WHERE idTActividad = "));
    step(splash);
    for (const QString& table : {QStringLiteral("F2001_Detalle"), QStringLiteral("F976_Detalle")}) {
        replaceSemicolons(
            db,
            QStringLiteral("SELECT COUNT(*) FROM %1 WHERE INSTR(%1.TipoActividad, ';') <> 0")
                .arg(table),
            QStringLiteral("SELECT TipoActividad, Id FROM %1 WHERE INSTR(TipoActividad, ';') <> 0")
                .arg(table),
            QStringLiteral("TipoActividad"), QStringLiteral("Id"),
            QStringLiteral("UPDATE %1 SET TipoActividad = ").arg(table),
            QStringLiteral(" WHERE %1.Id= ").arg(table));
        step(splash);
    }
    db.Dispose();
}

void ApplyUpgrades(ProgressWindow& splash)
{
    ApplyUpgrades(gAccess(), splash);
}

void ApplyUpgrades(ZoAccess& shared, ProgressWindow& splash)
{
    if (shared.GetString(QStringLiteral(
            "SELECT Valor FROM Opciones WHERE Nombre = 'PuntoPorComa'")) == QLatin1String("S"))
        return;

    // A table of the list that an old database lacks holds no amount to
    // convert: it is passed over (and noted in the daily log) instead of
    // stopping the conversion of all the others. A file that cannot be read
    // at all converts nothing and is not marked.
    QVector<Conversion> work;
    int rows = 0;
    for (const AmountTable& t : kAmountTables) {
        const QString table = QString::fromLatin1(t.table);
        const QString exists = TableExists(shared, table);
        if (exists.isEmpty())
            return;
        if (exists != kOne) {
            logConversion(QStringLiteral("PuntoPorComa: falta la tabla ") + table +
                          QStringLiteral("; no tiene importes que convertir."));
            continue;
        }
        Conversion c;
        c.table = table;
        const QStringList present = TableColumns(shared, table);
        for (const QString& column : listed(t))
            if (present.contains(column, Qt::CaseInsensitive))
                c.columns << column;
        c.rows = qMax(0, int(shared.GetLong(QStringLiteral("SELECT COUNT(1) FROM ") + table)));
        rows += c.rows;
        work.push_back(c);
    }

    // The bar starts at 2 and moves one step per row; with fewer than two
    // rows it starts at its end rather than beyond it. The value goes first,
    // so that it never stands beyond the new maximum.
    Field& pb = splash.field(QStringLiteral("pb"));
    pb.setValue(qMin(2, rows));
    pb.setMaximum(rows);

    ZoAccess db;
    db.SetConnectionString(shared.ConnectionString());
    convertAll(db, splash, work);
    db.Dispose();
}

void UpgradeAddGuidColumns()
{
    UpgradeAddGuidColumns(gAccess());
}

void UpgradeAddGuidColumns(ZoAccess& db)
{
    if (db.GetString(QStringLiteral("SELECT Valor FROM Opciones WHERE Nombre = 'GUID'")) ==
        QLatin1String("S"))
        return;
    for (const char* table : {"F2001", "F976", "F977", "F978", "F985", "F986", "F987", "F988"}) {
        const QString name = QString::fromLatin1(table);
        addColumns(db, name, {QStringLiteral("Guidv")},
                   QStringLiteral("ALTER TABLE ") + name +
                       QStringLiteral(" ADD COLUMN Guidv TEXT(12);"));
    }
    db.Execute(QStringLiteral("INSERT INTO Opciones (Nombre, Valor) VALUES ('GUID', 'S')"));
}

QString CommaDecimalFromDotted(const QString& text)
{
    QString plain = text;
    plain.remove(u',');
    plain.replace(u'.', u',');
    // A text that is no number (the empty one included) is kept as it was: it
    // is no amount in either form, and rewriting it could only damage it.
    const auto value = LocaleNumber(plain);
    if (!value)
        return text;
    return LocaleFixed(*value, 2, true);
}
