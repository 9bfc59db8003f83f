#include "Db.h"

#include <QFileInfo>
#include <QTest>

#include "ErrorLog.h"
#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace Db {

void exec(const QString& sql)
{
    const qint64 logged = QFileInfo(ErrorLogPath()).size();
    gAccess().Execute(sql);
    if (QFileInfo(ErrorLogPath()).size() != logged)
        QTest::qFail(qPrintable("test data not written: " + sql), __FILE__, __LINE__);
}

void insert(const QString& table, const QStringList& pairs)
{
    QStringList names, values;
    for (const QString& pair : pairs) {
        const QString value = pair.section(u'=', 1);
        names << pair.section(u'=', 0, 0);
        values << (value == QLatin1String("<null>") ? QStringLiteral("NULL")
                                                    : u'\'' + Sq(value) + u'\'');
    }
    exec(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
             .arg(table, names.join(u','), values.join(u',')));
}

QStringList rows(const QString& sql)
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(sql);
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        QStringList cells;
        for (int i = 0; i < rs->FieldCount(); ++i)
            cells << (rs->IsNull(i) ? QStringLiteral("<null>") : rs->Text(i));
        out << cells.join(u'|');
    }
    return out;
}

QStringList column(const QString& sql)
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(sql);
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

int count(const QString& table, const QString& where)
{
    return gAccess().GetLong(QStringLiteral("SELECT COUNT(*) FROM ") + table +
                             (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where));
}

QStringList tables()
{
    QStringList names = gAccess().TableNames();
    names.sort();
    return names;
}

QStringList columns(const QString& table)
{
    RecordsetPtr rs =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + table + " WHERE 1 = 0");
    return rs ? rs->FieldNames() : QStringList();
}

QString dump()
{
    QString out;
    for (const QString& table : tables())
        out += u'[' + table + QStringLiteral("] ") + columns(table).join(u'|') + u'\n' +
               rows(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" ORDER BY rowid"))
                   .join(u'\n') +
               u'\n';
    return out;
}

} // namespace Db
