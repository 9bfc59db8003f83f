#include "Transaction.h"

#include <sqlite3.h>

#include "Globals.h"
#include "UiPort.h"
#include "ZoAccess.h"

namespace {
int g_depth = 0;
} // namespace

Transaction::Transaction(Mode mode) : Transaction(gAccess(), mode) {}

Transaction::Transaction(ZoAccess& db, Mode mode)
    : m_db(db), m_mode(mode), m_name(QStringLiteral("unidad_%1").arg(++g_depth))
{
    m_failuresAtStart = m_db.FailureCount();
    m_open = m_db.RunControl(QStringLiteral("SAVEPOINT ") + m_name);
    if (!m_open) {
        --g_depth;
        m_failure = SaveFailureText(m_db.LastErrorCode(), m_db.LastError());
    }
}

Transaction::~Transaction()
{
    commit();
}

bool Transaction::ok() const
{
    return m_open && m_db.FailureCount() == m_failuresAtStart;
}

bool Transaction::commit()
{
    if (!m_open)
        return m_stood;
    if (m_mode == Mode::AllOrNothing && !ok()) {
        m_failure = SaveFailureText(m_db.LastErrorCode(), m_db.LastError());
        undo();
        return false;
    }
    m_stood = release();
    if (!m_stood) {
        m_failure = SaveFailureText(m_db.LastErrorCode(), m_db.LastError());
        undo();
    }
    return m_stood;
}

void Transaction::rollback()
{
    if (m_open)
        undo();
}

bool Transaction::release()
{
    const bool released = m_db.RunControl(QStringLiteral("RELEASE ") + m_name);
    if (released) {
        m_open = false;
        --g_depth;
    }
    return released;
}

void Transaction::undo()
{
    // Back to where the unit began, then out of it; should the engine refuse
    // (a failed commit may have ended the transaction already), whatever is
    // still open of it is rolled back whole.
    const bool back = m_db.RunControl(QStringLiteral("ROLLBACK TO ") + m_name) &&
                      m_db.RunControl(QStringLiteral("RELEASE ") + m_name);
    if (!back && g_depth == 1)
        m_db.RunControl(QStringLiteral("ROLLBACK"));
    m_open = false;
    m_stood = false;
    --g_depth;
}

QString SaveFailureText(int sqliteCode, const QString& engineMessage)
{
    const QString prefix = QStringLiteral("No se pudo guardar: ");
    switch (sqliteCode & 0xff) {
    case SQLITE_FULL: return prefix + QStringLiteral("el disco está lleno.");
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN: return prefix + QStringLiteral("la base de datos es de solo lectura.");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB: return prefix + QStringLiteral("la base de datos está dañada.");
    case SQLITE_IOERR: return prefix + QStringLiteral("no se pudo escribir en el disco.");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return prefix + QStringLiteral("la base de datos está en uso por otro programa.");
    default:
        return prefix + (engineMessage.isEmpty() ? QStringLiteral("error de la base de datos.")
                                                 : engineMessage);
    }
}

bool SaveWhole(const std::function<bool()>& save)
{
    Transaction unit(Transaction::Mode::AllOrNothing);
    if (unit.ok() && !save()) {
        unit.rollback();
        return false;
    }
    if (unit.commit())
        return true;
    MsgBox(unit.failure(), Msg::Exclamation);
    return false;
}
