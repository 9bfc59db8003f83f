#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>

#include "Globals.h"
#include "database/Schema.h"
#include "TestSupport.h"
#include "ZoAccess.h"

// The declarations of January 2010 of premises 0000000012345 / 0000000000001
// that the golden submission texts under tests/data/output were written from.
namespace OutputFixture {

inline const QString kPadron = QStringLiteral("0000000012345");
inline const QString kObjeto = QStringLiteral("0000000000001");

inline QString dataFile(const QString& name)
{
    return QStringLiteral(MORVEL_OUTPUT_DATA "/") + name;
}

inline QByteArray golden(const QString& form)
{
    return ReadBytes(dataFile(form + QStringLiteral(".txt")));
}

// Runs the statements of a file of tests/data/output, one a line.
inline bool loadStatements(const QString& name)
{
    const QByteArray text = ReadBytes(dataFile(name));
    for (const QString& line : QString::fromUtf8(text).split(u'\n'))
        if (!line.trimmed().isEmpty() && !line.trimmed().startsWith(QLatin1String("--")))
            gAccess().Execute(line.trimmed());
    return !text.isEmpty();
}

inline bool loadDeclarations()
{
    return loadStatements(QStringLiteral("declaraciones.sql"));
}

// The database with the declarations, built once by the schema step and
// copied into each test's own folder: a build per test would cost a second
// of disk flushes every time. `more` adds what a test class needs besides.
class FixtureDatabase
{
public:
    bool build(bool withDeclarations = true, const std::function<bool()>& more = {})
    {
        if (TestEnv::onServer()) {
            // Each test's database on the server is made anew the same way.
            m_replay = [this, withDeclarations, more] {
                CreateCurrentDatabase();
                return (!withDeclarations || loadDeclarations()) && (!more || more());
            };
            return true;
        }
        TestEnv env;
        env.createDatabase();
        if ((withDeclarations && !loadDeclarations()) || (more && !more()))
            return false;
        CloseDatabase();
        m_bytes = ReadBytes(DatabasePath());
        return !m_bytes.isEmpty();
    }
    // Into the data folder of a fresh TestEnv, before its first statement.
    bool install() const { return m_replay ? m_replay() : WriteBytes(DatabasePath(), m_bytes); }

private:
    QByteArray m_bytes;
    std::function<bool()> m_replay;
};

// The version of each form that the fixture generates: Rectificativa,
// FechaRectificativa and ctrl.
inline QStringList versionOf(const QString& form)
{
    static const QHash<QString, QStringList> rectifications = {
        {"F2001", {"Verdadero", "15-03-2010", "1"}},
        {"F978", {"Verdadero", "10-02-2010", "1"}},
        {"F987", {"Verdadero", "25-02-2010", "1"}},
        {"F988", {"Verdadero", "20-02-2010", "1"}}};
    return rectifications.value(form, {"Falso", "0", "0"});
}

// The parameter string a form hands to the generation for its version `v`
// (Rectificativa, FechaRectificativa, ctrl): the month apart from the year,
// or "mm-yyyy" with no year when `anio` is empty.
inline QString parametersOf(const QString& form, const QStringList& v,
                            const QString& periodo = QStringLiteral("01"),
                            const QString& anio = QStringLiteral("2010"))
{
    const QString letter = v.at(0) == QLatin1String("Verdadero") ? "R" : "O";
    return "Padron=" + kPadron + " - Objeto N° " + kObjeto + ";Periodo=" + periodo + ";" +
           (anio.isEmpty() ? QString() : "Anio=" + anio + ";") + "Rectificativa=" + v.at(0) +
           ";Codigo=" + kPadron + "012010" + kObjeto + letter + ";Formulario=" + form +
           ";FechaRectificativa=" + v.at(1) + ";ctrl=" + v.at(2) + ";Nuevo=False;ConDatos=True;";
}
// The same for the version the fixture generates.
inline QString parameters(const QString& form, const QString& periodo = QStringLiteral("01"),
                          const QString& anio = QStringLiteral("2010"))
{
    return parametersOf(form, versionOf(form), periodo, anio);
}

inline const QStringList kForms = {"F976", "F2001", "F977", "F978", "F985", "F987", "F986", "F988"};

} // namespace OutputFixture
