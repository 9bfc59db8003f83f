#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "navigation/ContribuyentesDatos.h"

class TreeModel;

// Rows put in the tables as saved declarations leave them, and readings of the
// tree, shared by the navigation tests. Taxpayer 1 "PEREZ JUAN" owns every
// premises added here; padrón and objeto are given short ("1") and stored
// padded to 13 digits.
namespace nav {

extern const QString kCuit; // bare, as the premises keep it

QString Pad13(const QString& text);
void AddTaxpayer(int id, const QString& name, const QString& cuit);
void AddPremises(const QString& padron, const QString& regimen, const QString& retencion = "0",
                 const QString& percepcion = "0", const QString& objeto = "1",
                 const QString& principal = {}, const QString& cuit = kCuit);

struct Declaration {
    Declaration(QString form, QString periodo, int ctrl = 0, QString fecha = "0",
                QString padron = "1", QString objeto = "1", QStringList columns = {})
        : form(std::move(form)), periodo(std::move(periodo)), ctrl(ctrl),
          fecha(std::move(fecha)), padron(std::move(padron)), objeto(std::move(objeto)),
          columns(std::move(columns))
    {
    }
    QString form;
    QString periodo; // mm-yyyy
    int ctrl;        // 0: the original; above: a rectification ("Verdadero")
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

// The first column of every row of a statement, as text.
QStringList Column(const QString& sql);
int Count(const QString& table, const QString& where = {});

// Keys of the tree, as the tree writes them.
QString PremisesKey(const QString& padron, const QString& objeto = "1");
QString MonthKey(const QString& padron, const QString& yyyy, const QString& mm);
QString NodeKey(const Declaration& d);
// The captions of a node's children, in order.
QStringList ChildCaptions(const TreeModel& tree, const QString& key);
// The form ids of the forms a month offers to start.
QStringList NewForms(const TreeModel& tree, const QString& monthKey);
QString ChildKey(const TreeModel& tree, const QString& key, const QString& caption);
// The whole tree as indented captions.
QStringList Outline(const TreeModel& tree);

// The window of taxpayer 1, loaded.
std::unique_ptr<ContribuyentesDatos> OpenTaxpayer();

} // namespace nav
