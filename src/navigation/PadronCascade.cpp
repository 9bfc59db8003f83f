#include "PadronCascade.h"

#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace {

QString keyOf(const QString& padron, const QString& objeto)
{
    QString where = QStringLiteral(" WHERE padron = '") + Sq(padron) + u'\'';
    if (!objeto.isEmpty())
        where += QStringLiteral(" and objeto = '") + Sq(objeto) + u'\'';
    return where;
}

// The lines go by their declaration's Codigo, which already names the objeto.
void deleteWithLines(const QString& table, const QString& where)
{
    ZoAccess& db = gAccess();
    const RecordsetPtr rows = db.FillRecordSet(QStringLiteral("SELECT * FROM ") + table + where);
    for (; rows && !rows->EOF_(); rows->MoveNext())
        db.Execute(QStringLiteral("DELETE * FROM ") + table +
                   QStringLiteral("_Detalle WHERE codigo = '") +
                   Sq(rows->Text(QStringLiteral("codigo"))) + u'\'');
    db.Execute(QStringLiteral("DELETE * FROM ") + table + where);
}

} // namespace

void PadronCascade::Run(const QString& padron, const QString& objeto)
{
    ZoAccess& db = gAccess();
    const QString where = keyOf(padron, objeto);
    db.Execute(QStringLiteral("DELETE * FROM Actividades_x_padrones") + where);
    for (const char* table : {"F2001", "F976", "F978"})
        deleteWithLines(QString::fromLatin1(table), where);
    for (const char* table : {"F986", "F988", "TPadrones_Formularios", "tPadronesComerciales"})
        db.Execute(QStringLiteral("DELETE * FROM ") + QString::fromLatin1(table) + where);
}
