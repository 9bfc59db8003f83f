#pragma once

#include <QString>
#include <QStringList>

// Turns a statement of the Jet dialect, as the system writes them, into the
// SQLite statements that do the same. Most of the dialect runs unchanged
// (MID, RIGHT, LEFT, LEN, UCASE, INSTR and IIF are functions registered on
// the connection); what SQLite lacks is rewritten here.
struct JetTranslation {
    QStringList statements; // empty: nothing to run, and nothing failed
    bool atomic = false;    // all or none (several columns added at once)
};

JetTranslation TranslateJetSql(const QString& jet);
