#pragma once

#include <QString>
#include <QStringList>

// Rows put in the tables as the program's own screens leave them: a taxpayer,
// its premises, its declarations with their registration rows and lines.
// Padrón and objeto are given short ("1") and stored padded to 13 digits.
namespace Seed {

inline const QString kCuit = QStringLiteral("20123456786");

QString Pad13(const QString& text);
// The CUIT stored masked, as the taxpayer dialog keeps it.
void AddTaxpayer(int id, const QString& name, const QString& cuit = kCuit);
// A premises of CUIT kCuit, regime 0, no agent flag, razón social "RAZON
// {padron}", at "SAN MARTIN 100 - CAPITAL - 5500"; `more` adds or replaces
// columns ("regimen=1", "cuit=...").
void AddPremises(const QString& padron, const QString& objeto = QStringLiteral("1"),
                 const QStringList& more = {});

struct Declaration {
    Declaration(QString form, QString periodo, int ctrl = 0, QString fecha = "0",
                QString padron = "1", QString objeto = "1", QStringList columns = {})
        : form(std::move(form)), periodo(std::move(periodo)), ctrl(ctrl), fecha(std::move(fecha)),
          padron(std::move(padron)), objeto(std::move(objeto)), columns(std::move(columns))
    {
    }
    QString form;
    QString periodo; // mm-yyyy
    int ctrl;        // 0: the original ("False"); above: a rectification ("Verdadero")
    QString fecha;
    QString padron;
    QString objeto;
    QStringList columns; // "Column=value" of the header row
    QString rectificativa() const;
};
// The header row and its registration row; returns the Codigo ("" for the
// agents' returns, which have none).
QString AddDeclaration(const Declaration& d);
void AddLine(const QString& form, const QString& codigo, const QString& fecha, const QString& ctrl,
             const QString& codigoDetalle, const QStringList& columns = {});

} // namespace Seed
