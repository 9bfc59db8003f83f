#pragma once

#include <QString>
#include <QStringList>

// Turns a statement of the Jet dialect, as the system writes them, into the
// SQLite statements that do the same. Most of the dialect runs unchanged
// (MID, RIGHT, LEFT, LEN, UCASE, INSTR and IIF are functions registered on
// the connection); what SQLite lacks is rewritten here.
//
// The same statements run on a firm's PostgreSQL server: there text columns
// are CITEXT (compared without regard to case for every letter, LIKE too),
// Jet's functions are called by the server's names or by functions of our own
// made on connecting (jet_instr, jet_iif), and "?" marks become $1, $2...
enum class JetDialect { Sqlite, Postgres };

struct JetTranslation {
    QStringList statements; // empty: nothing to run, and nothing failed
    bool atomic = false;    // all or none (several columns added at once)
};

JetTranslation TranslateJetSql(const QString& jet, JetDialect dialect = JetDialect::Sqlite);

// The name of a result column as the statements spell it. The server folds
// unquoted names to lower case; the screens show and match names as the
// system wrote them ("Codigo", "Importe"), as SQLite keeps them. A name the
// statement itself spells wins; then the spelling of the table's creation;
// then the first one met.
QString JetSpelling(const QString& serverName, const QString& statement);
