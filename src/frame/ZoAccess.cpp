#include "ZoAccess.h"

#include <QFileInfo>
#include <sqlite3.h>

#include "Controller.h"
#include "ErrorLog.h"
#include "Field.h"
#include "Globals.h"
#include "JetSql.h"
#include "DatabaseLocation.h"
#include "Numbers.h"
#include "PostgresDatabase.h"
#include "SqliteDatabase.h"
#include "Tovak.h"
#include "UiPort.h"

namespace {

const QStringList kAmountColumns = {QStringLiteral("Importe"), QStringLiteral("Monto"),
                                    QStringLiteral("Alícuota"), QStringLiteral("Base Imponible"),
                                    QStringLiteral("Impuesto")};

QVector<QVariant> bindsOf(const QStringList& parameters)
{
    // An element equal to "" is bound as Null, every other as its text.
    QVector<QVariant> binds;
    binds.reserve(parameters.size());
    for (const QString& p : parameters)
        binds.push_back(p.isEmpty() ? QVariant() : QVariant(p));
    return binds;
}

std::optional<double> numberOf(const QVariant& v)
{
    if (v.isNull() || !v.isValid())
        return std::nullopt;
    if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Double ||
        v.typeId() == QMetaType::Int)
        return v.toDouble();
    return LocaleNumber(v.toString());
}

const QString kServerProvider = QStringLiteral("PostgreSQL");

} // namespace

int ZoAccess::s_failureCount = 0;
int ZoAccess::s_lastErrorCode = 0;
QString ZoAccess::s_lastError;

namespace {
std::optional<DatabaseLocation>& cachedLocation()
{
    static std::optional<DatabaseLocation> location;
    return location;
}

const DatabaseLocation& workstationLocation()
{
    auto& location = cachedLocation();
    if (!location)
        location = DatabaseLocation::current();
    return *location;
}

// The string last made, for the path and data folder it was made for: every
// statement asks for it.
struct MadeString {
    QString databasePath, appPath, text;
};

std::optional<MadeString>& lastDefaultString()
{
    static std::optional<MadeString> made;
    return made;
}
} // namespace

QString DefaultConnectionString(const QString& databasePath)
{
    std::optional<MadeString>& last = lastDefaultString();
    if (last && last->databasePath == databasePath && last->appPath == gAppPath)
        return last->text;
    const DatabaseLocation& location = workstationLocation();
    QString text;
    if (location.isServer() && databasePath == ::DatabasePath())
        text = QStringLiteral("Provider=") + kServerProvider + QStringLiteral(";Data Source=") +
               location.connectionInfo() + u';';
    else
        text = QStringLiteral("Provider=SQLite;Data Source=") + databasePath +
               QStringLiteral(";User ID=Admin;Database Password=;");
    last = MadeString{databasePath, gAppPath, text};
    return text;
}

void CloseAllConnections()
{
    SqliteDatabase::closeAll();
    PostgresDatabase::closeAll();
    cachedLocation().reset();
    lastDefaultString().reset();
}

QString ZoAccess::ConnectionString() const
{
    return m_connectionString.isEmpty() ? DefaultConnectionString(::DatabasePath())
                                        : m_connectionString;
}

const ZoAccess::Target& ZoAccess::target() const
{
    // Every statement asks where its database is: the string is read again
    // only when it changed.
    const QString text = ConnectionString();
    if (!m_target.read || text != m_target.text) {
        m_target.text = text;
        m_target.path = ReadParameter(text, "Data Source");
        m_target.server = ReadParameter(text, "Provider") == kServerProvider;
        m_target.read = true;
    }
    return m_target;
}

QString ZoAccess::DatabasePath() const
{
    return target().path;
}

bool ZoAccess::OnServer() const
{
    return target().server;
}

DatabaseConnection* ZoAccess::connection()
{
    const Target& where = target();
    return where.server ? PostgresDatabase::open(where.path) : SqliteDatabase::open(where.path);
}

QString ZoAccess::openFailure() const
{
    if (OnServer())
        return QStringLiteral("No se pudo conectar con la base de datos ") + Describe() +
               QStringLiteral(": ") + PostgresDatabase::connectError();
    return QStringLiteral("No se pudo abrir la base de datos ") + DatabasePath();
}

QString ZoAccess::Describe() const
{
    if (!OnServer())
        return DatabasePath();
    return DatabaseLocation::fromConnectionInfo(DatabasePath()).describe();
}

bool ZoAccess::run(const QString& sql, const QVector<QVariant>& binds, QueryResult* result)
{
    return run(sql, [&](DatabaseConnection& db, const QString& statement) {
        return db.run(statement, binds, result);
    });
}

bool ZoAccess::run(const QString& sql, const LastStatement& last)
{
    m_failed = false;
    DatabaseConnection* db = connection();
    if (!db) {
        noteFailure(nullptr, openFailure(), sql);
        return false;
    }
    const JetTranslation jet = TranslateJetSql(sql, db->dialect());
    // A statement that fails inside a server's transaction would end it
    // whole: each one stands in a savepoint of its own there, so that a
    // failure undoes only itself, as on a file.
    const bool guarded =
        jet.atomic || (db->dialect() == JetDialect::Postgres && db->inTransaction());
    bool ok = !guarded || db->run(QStringLiteral("SAVEPOINT jet_atomic"), {}, nullptr);
    for (int i = 0; ok && i < jet.statements.size(); ++i) {
        ok = i == jet.statements.size() - 1 ? last(*db, jet.statements.at(i))
                                           : db->run(jet.statements.at(i), {}, nullptr);
    }
    if (!ok)
        noteFailure(db, db->lastError(), sql);
    if (guarded) {
        if (!ok)
            db->run(QStringLiteral("ROLLBACK TO jet_atomic"), {}, nullptr);
        db->run(QStringLiteral("RELEASE jet_atomic"), {}, nullptr);
    }
    return ok;
}

bool ZoAccess::Execute(const QString& sql)
{
    if (!run(sql, {}, nullptr)) {
        ShowError();
        Dispose();
    }
    return true;
}

bool ZoAccess::ExecuteNonQuery(const QString& sql, QStringList& parameters)
{
    m_parameters = parameters;
    if (!run(sql, bindsOf(m_parameters), nullptr)) {
        ShowError();
        Dispose();
    }
    return true;
}

bool ZoAccess::DeleteRecord(const QString& sql, bool confirm)
{
    if (confirm && MsgBox(QStringLiteral("Esta seguro de eliminar el registro?"),
                          Msg::YesNo + Msg::Question, QStringLiteral("Eliminar")) == Msg::No)
        return false;
    if (!run(sql, {}, nullptr)) {
        ShowError();
        Dispose();
        return false;
    }
    return true;
}

RecordsetPtr ZoAccess::read(const QString& sql, const QVector<QVariant>& binds)
{
    m_recordset.reset();
    QueryResult result;
    if (!run(sql, binds, &result))
        return nullptr;
    m_recordset = std::make_shared<Recordset>(std::move(result.columns), std::move(result.rows));
    return m_recordset;
}

RecordsetPtr ZoAccess::FillRecordSet(const QString& sql)
{
    RecordsetPtr rs = read(sql, {});
    if (!rs) {
        ShowError();
        Dispose();
    }
    return rs;
}

bool ZoAccess::ReadTexts(const QString& sql, const TextRowReader& reader)
{
    const bool ok = run(sql, [&](DatabaseConnection& db, const QString& statement) {
        return db.readTexts(statement, reader);
    });
    if (!ok) {
        ShowError();
        Dispose();
    }
    return ok;
}

RecordsetPtr ZoAccess::FillRecordSetReader(const QString& sql)
{
    return FillRecordSet(sql);
}

RecordsetPtr ZoAccess::FillRecordSetReaderWP(const QString& sql, const QStringList& parameters)
{
    m_parameters = parameters;
    RecordsetPtr rs = read(sql, bindsOf(parameters));
    if (!rs) {
        ShowError();
        Dispose();
    }
    return rs;
}

bool ZoAccess::firstValue(const QString& sql, QVariant& value)
{
    m_showMessageError = false;
    RecordsetPtr rs = read(sql, {});
    if (!rs) {
        Dispose();
        return false;
    }
    bool ok = false;
    value = rs->Field(0, &ok);
    rs->Close();
    m_recordset.reset();
    return ok;
}

QString ZoAccess::GetString(const QString& sql)
{
    QVariant v;
    if (!firstValue(sql, v) || v.isNull())
        return {};
    return VariantText(v);
}

int ZoAccess::GetInteger(const QString& sql)
{
    QVariant v;
    if (!firstValue(sql, v))
        return -1;
    const auto number = numberOf(v);
    const auto rounded = number ? RoundToEven(*number) : std::nullopt;
    if (!rounded || *rounded < -32768 || *rounded > 32767)
        return -1;
    return int(*rounded);
}

qint32 ZoAccess::GetLong(const QString& sql)
{
    QVariant v;
    if (!firstValue(sql, v) || v.isNull())
        return -1;
    const double number = (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Double)
                              ? v.toDouble()
                              : Val(v.toString());
    const auto rounded = RoundToEven(number);
    if (!rounded || *rounded < INT32_MIN || *rounded > INT32_MAX)
        return -1;
    return qint32(*rounded);
}

double ZoAccess::GetDouble(const QString& sql)
{
    if (sql.isEmpty())
        return 0;
    QVariant v;
    if (!firstValue(sql, v))
        return -1;
    if (v.isNull())
        return 0;
    const auto number = numberOf(v);
    return number ? *number : -1;
}

bool ZoAccess::GetBoolean(const QString& sql)
{
    QVariant v;
    if (!firstValue(sql, v) || v.isNull())
        return false;
    if (const auto number = numberOf(v))
        return *number != 0;
    const QString text = v.toString().trimmed();
    return text.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0 ||
           text.compare(QStringLiteral("Verdadero"), Qt::CaseInsensitive) == 0;
}

QVariant ZoAccess::GetMax(const QString& table, const QString& field)
{
    RecordsetPtr rs = FillRecordSetReader(QStringLiteral("SELECT MAX(") + field +
                                          QStringLiteral(") AS MAXIMO FROM ") + table);
    if (!rs)
        return {};
    rs->MoveFirst();
    const QVariant max = rs->Field(QStringLiteral("MAXIMO"));
    return max.isNull() ? QVariant(0) : max;
}

bool ZoAccess::FillComboBox(const QString& sql, Field& combo, const QString& selected)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    if (!rs)
        return false;
    combo.clearItems();
    QVector<ListItem> items;
    qint64 counter = 0;
    for (; !rs->EOF_(); rs->MoveNext()) {
        const QVariant v = rs->Field(0);
        if (v.isNull())
            continue;
        const auto number = numberOf(v);
        const qint64 data = number ? qint64(*number) : counter++;
        items.push_back(ListItem{VariantText(v).toUpper(), data, true});
    }
    combo.addItems(items);
    if (selected.isEmpty()) {
        combo.setListIndex(-1);
    } else {
        const qint64 wanted = qint64(Val(selected));
        for (int i = 0; i < combo.listCount(); ++i)
            if (combo.itemData(i) == wanted) {
                combo.setListIndex(i);
                break;
            }
    }
    Dispose();
    return true;
}

bool ZoAccess::FillComboBoxField(const QString& sql, Field& combo)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    if (!rs)
        return true;
    combo.clearItems();
    for (int i = 0; i < rs->FieldCount(); ++i)
        combo.addItem(rs->FieldName(i), i);
    combo.setListIndex(combo.listCount() > 0 ? 0 : -1);
    return true;
}

bool ZoAccess::FillComboBoxAnios(const QString& sql, Field& combo, const QString& selected)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    if (!rs)
        return false;
    combo.clearItems();
    QString previous;
    qint64 counter = 0;
    for (; !rs->EOF_(); rs->MoveNext()) {
        if (rs->IsNull(0))
            continue;
        const QString year = rs->Text(0).right(4);
        if (year != previous)
            combo.addItem(year, counter++);
        previous = year;
    }
    if (!selected.isEmpty()) {
        const qint64 wanted = qint64(Val(selected));
        for (int i = 0; i < combo.listCount(); ++i)
            if (combo.itemData(i) == wanted) {
                combo.setListIndex(i);
                break;
            }
    }
    Dispose();
    return true;
}

bool ZoAccess::FillComboBoxMes(const QString& sql, Field& combo, const QString& year)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    if (!rs)
        return false;
    combo.clearItems();
    QString previous;
    qint64 counter = 0;
    for (; !rs->EOF_(); rs->MoveNext()) {
        if (rs->IsNull(0))
            continue;
        const QString period = rs->Text(0);
        if (period.right(4) != year)
            continue;
        const QString month = period.left(2);
        if (month != previous)
            combo.addItem(month, counter++);
        previous = month;
    }
    Dispose();
    return true;
}

bool ZoAccess::FillListBox(const QString& sql, Field& list)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    if (!rs)
        return false;
    list.clearItems();
    QVector<ListItem> items;
    items.reserve(rs->RecordCount());
    for (; !rs->EOF_(); rs->MoveNext()) {
        if (rs->IsNull(0))
            continue;
        const auto number = numberOf(rs->Field(0));
        items.push_back(ListItem{rs->Text(1), number ? qint64(*number) : 0, true});
    }
    list.addItems(items);
    Dispose();
    return true;
}

bool ZoAccess::FillListView(const QString& sql, Field& listView)
{
    RecordsetPtr rs = FillRecordSetReader(sql);
    listView.clearRows();
    listView.setHeader({});
    listView.rightAligned.clear();
    if (!rs)
        return false;
    listView.setHeader(rs->FieldNames());
    for (int i = 1; i < rs->FieldCount(); ++i)
        if (kAmountColumns.contains(rs->FieldName(i)))
            listView.rightAligned.push_back(i);
    QVector<QStringList> rows;
    for (; !rs->EOF_(); rs->MoveNext()) {
        if (rs->IsNull(0))
            continue;
        QStringList cells{rs->Text(0)};
        for (int i = 1; i < rs->FieldCount(); ++i) {
            if (!listView.rightAligned.contains(i)) {
                cells << rs->Text(i);
                continue;
            }
            const auto number = numberOf(rs->Field(i));
            if (!number) { // a Null amount fails the whole fill
                listView.setRows(rows);
                m_lastError = QStringLiteral("Uso no válido de Null");
                LogError(QStringLiteral("94"), m_lastError + QStringLiteral("\n") + sql,
                         QStringLiteral("ZoAccess.FillListView"));
                ShowError();
                Dispose();
                return false;
            }
            cells << LocaleFixed(*number, 2, false);
        }
        rows.push_back(cells);
    }
    listView.setRows(rows);
    Dispose();
    return true;
}

bool ZoAccess::FillTreeView(const QString& sql, Field& tree)
{
    RecordsetPtr rs = read(sql, {});
    if (!rs) {
        ShowError();
        Dispose();
        return false;
    }
    for (; !rs->EOF_(); rs->MoveNext())
        if (!rs->IsNull(0))
            tree.tree().add({}, QStringLiteral("Key=") + rs->Text(0), rs->Text(1));
    tree.treeChanged();
    Dispose();
    return true;
}

bool ZoAccess::FillTreeViewData(const QString& sql, Field& tree)
{
    RecordsetPtr rs = read(sql, {});
    if (!rs) {
        ShowError();
        Dispose();
        return false;
    }
    tree.tree().clear();
    for (; !rs->EOF_(); rs->MoveNext())
        tree.tree().add(rs->IsNull(0) ? QString() : rs->Text(0), rs->Text(1), rs->Text(2));
    tree.treeChanged();
    Dispose();
    return true;
}

bool ZoAccess::FillVectorIdName(const QString& sql, QVector<QStringList>& vector)
{
    RecordsetPtr rs = read(sql, {});
    if (!rs) {
        ShowError();
        Dispose();
        return false;
    }
    vector.clear();
    for (; !rs->EOF_(); rs->MoveNext())
        vector.push_back({rs->Text(0), rs->Text(1)});
    Dispose();
    return true;
}

bool ZoAccess::FillForm(const QString& sql, Controller& form, RecordsetPtr rs)
{
    if (!rs) {
        rs = FillRecordSetReader(sql);
        if (!rs)
            return false;
        rs->MoveFirst();
    }
    for (Field* f : form.fields()) {
        if (f->kind() != FieldKind::Text)
            continue;
        for (int i = 0; i < rs->FieldCount(); ++i)
            if (rs->FieldName(i) == f->name() && !rs->IsNull(i))
                f->setText(rs->Text(i));
    }
    return true;
}

void ZoAccess::ShowError()
{
    if (!m_showMessageError) {
        m_failed = false;
        return;
    }
    QString message;
    if (m_failed && !m_lastError.isEmpty())
        message = QStringLiteral("Error: \rDescripción: ") + m_lastError +
                  QStringLiteral("\rOrigen: ") +
                  (OnServer() ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite")) +
                  QStringLiteral("\r");
    if (message.isEmpty())
        message = QStringLiteral(
            "Error no controlado. Por favor consulte con el Administrador del Sistema.");
    message += QStringLiteral("\rPor favor consulte la ayuda.");
    MsgBox(message, Msg::Exclamation, QStringLiteral("Atención "));
    m_failed = false;
}

void ZoAccess::Dispose()
{
    if (m_recordset)
        m_recordset->Close();
    m_recordset.reset();
}

bool ZoAccess::RunControl(const QString& sql)
{
    DatabaseConnection* db = connection();
    if (!db) {
        noteFailure(nullptr, openFailure(), sql);
        return false;
    }
    // A server opens a transaction with BEGIN, where a file takes the first
    // SAVEPOINT for one; the savepoint that began it commits it on release.
    bool ok = true;
    const bool server = db->dialect() == JetDialect::Postgres;
    const QString word = sql.section(u' ', 0, 0).toUpper();
    const QString name = sql.section(u' ', -1);
    if (server && word == u"SAVEPOINT" && !db->inTransaction()) {
        ok = db->run(QStringLiteral("BEGIN"), {}, nullptr);
        db->outermostUnit = name;
    }
    ok = ok && db->run(sql, {}, nullptr);
    if (ok && server && word == u"RELEASE" && name == db->outermostUnit) {
        db->outermostUnit.clear();
        ok = db->run(QStringLiteral("COMMIT"), {}, nullptr);
    }
    if (word == u"ROLLBACK" && sql.trimmed().size() == word.size())
        db->outermostUnit.clear();
    if (!ok)
        noteFailure(db, db->lastError(), sql);
    return ok;
}

std::unique_ptr<ZoAccess::Prepared> ZoAccess::Prepare(const QString& sql)
{
    DatabaseConnection* db = connection();
    if (!db) {
        noteFailure(nullptr, openFailure(), sql);
        return nullptr;
    }
    const JetTranslation jet = TranslateJetSql(sql, db->dialect());
    std::unique_ptr<PreparedStatement> statement =
        jet.statements.size() == 1 ? db->prepare(jet.statements.first()) : nullptr;
    if (!statement) {
        noteFailure(db, db->lastError(), sql);
        return nullptr;
    }
    return std::make_unique<Prepared>(*this, std::move(statement), sql);
}

ZoAccess::Prepared::Prepared(ZoAccess& db, std::unique_ptr<PreparedStatement> statement,
                             QString sql)
    : m_db(db), m_statement(std::move(statement)), m_sql(std::move(sql))
{
}

ZoAccess::Prepared::~Prepared() = default;

bool ZoAccess::Prepared::run(const QVector<QVariant>& values)
{
    return m_statement->run(values) || failed();
}

bool ZoAccess::Prepared::runTexts(const QStringList& texts, int marks)
{
    return m_statement->runTexts(texts, marks) || failed();
}

bool ZoAccess::Prepared::failed()
{
    DatabaseConnection* db = m_db.connection();
    m_db.noteFailure(db, db ? db->lastError() : m_db.openFailure(), m_sql);
    return false;
}

QStringList ZoAccess::TableNames(bool* ok)
{
    bool read = false;
    DatabaseConnection* db = connection();
    const QStringList names = db ? db->tableNames(&read) : QStringList();
    if (ok)
        *ok = read;
    return names;
}

DatabaseConnection::Kind ZoAccess::DatabaseKind()
{
    DatabaseConnection* db = connection();
    return db ? db->kind() : DatabaseConnection::Kind::Unreadable;
}

bool ZoAccess::ReadOnly()
{
    DatabaseConnection* db = connection();
    return !db || db->readOnly();
}

bool ZoAccess::MarkAsOwn()
{
    DatabaseConnection* db = connection();
    return db && db->markAsOwn();
}

void ZoAccess::noteFailure(DatabaseConnection* db, const QString& error, const QString& sql)
{
    m_failed = true;
    m_lastError = error;
    ++s_failureCount;
    s_lastErrorCode = db ? db->lastErrorCode() : SQLITE_CANTOPEN;
    s_lastError = error;
    LogError(QStringLiteral("SQL"), error + QStringLiteral("\n") + sql, QStringLiteral("ZoAccess"));
}

bool ZoAccess::ReserveKeys(const QString& table, const QString& scope)
{
    DatabaseConnection* db = connection();
    if (!db) {
        noteFailure(nullptr, openFailure(), table);
        return false;
    }
    // A server keeps a lock per name until the transaction ends; the name is
    // the table and the scope (however their words are spelt), hashed by the
    // server into the lock's number.
    // A file has one writer at a time: an empty write takes the file now.
    const bool server = db->dialect() == JetDialect::Postgres;
    const QString sql =
        server ? QStringLiteral("SELECT pg_advisory_xact_lock(7265002, hashtext($1))")
               : QStringLiteral("DELETE FROM ") + table + QStringLiteral(" WHERE 0");
    const QVector<QVariant> binds{(table + u'|' + scope).toLower().simplified()};
    if (db->run(sql, server ? binds : QVector<QVariant>{}, nullptr))
        return true;
    noteFailure(db, db->lastError(), sql);
    return false;
}

qint64 ZoAccess::NextKey(const QString& table, const QString& column, const QString& scope)
{
    if (!ReserveKeys(table, scope))
        return -1;
    QString sql = QStringLiteral("SELECT ") + column + QStringLiteral(" FROM ") + table;
    if (!scope.isEmpty())
        sql += QStringLiteral(" WHERE ") + scope;
    const RecordsetPtr rs = read(sql, {});
    if (!rs)
        return -1;
    // The highest by value: a text maximum would stop at "9999" and hand out
    // "10000" twice.
    qint64 highest = 0;
    for (const auto& row : rs->rows())
        highest = qMax(highest, row.value(0).toString().trimmed().toLongLong());
    Dispose();
    return highest + 1;
}
