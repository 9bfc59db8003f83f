#pragma once

#include <QString>
#include <QStringList>

// The test database written and read back as text, in the shapes the tests
// compare.
namespace Db {

// Runs a statement of the system's dialect; one that fails (the gateway
// swallows it and writes the log) fails the current test.
void exec(const QString& sql);
// One row from "Column=value" pairs: quotes doubled, <null> written as Null.
void insert(const QString& table, const QStringList& pairs);
// Each row of the statement, its cells joined by "|", Null as <null>.
QStringList rows(const QString& sql);
// The first cell of each row, Null as the empty text.
QStringList column(const QString& sql);
int count(const QString& table, const QString& where = {});
QStringList tables();
QStringList columns(const QString& table);
// Every row of every table, Null told apart from the empty text.
QString dump();

} // namespace Db
