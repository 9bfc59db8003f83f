#include "EditLock.h"

#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace {

// The first half of every lock of this program, apart from any other program
// that locks on the same server.
const QString kSpace = QStringLiteral("72650");

QString lockArguments(const QString& key)
{
    return kSpace + QStringLiteral(", hashtext('") + Sq(key) + QStringLiteral("')");
}

} // namespace

QString EditLock::Acquire(const QString& key)
{
    ZoAccess& db = gAccess();
    if (!db.OnServer())
        return {};
    if (db.GetString(QStringLiteral("SELECT pg_try_advisory_lock(") + lockArguments(key) +
                     QStringLiteral(")::int")) != u"0")
        return {};
    const QString holder = db.GetString(
        QStringLiteral("SELECT a.application_name FROM pg_locks l JOIN pg_stat_activity a "
                       "ON a.pid = l.pid WHERE l.locktype = 'advisory' AND l.granted "
                       "AND l.classid = ") +
        kSpace + QStringLiteral(" AND l.objid = hashtext('") + Sq(key) +
        QStringLiteral("')::oid AND l.objsubid = 2"));
    return holder.isEmpty() ? QStringLiteral("otro equipo") : holder;
}

void EditLock::Release(const QString& key)
{
    ZoAccess& db = gAccess();
    if (db.OnServer())
        db.GetString(QStringLiteral("SELECT pg_advisory_unlock(") + lockArguments(key) +
                     QStringLiteral(")::int"));
}

QString EditLock::HeldText(const QString& workstation)
{
    return QStringLiteral("La declaración está siendo editada en ") + workstation;
}
