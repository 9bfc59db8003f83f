#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "Db.h"
#include "Seed.h"
#include "navigation/ContribuyentesDatos.h"

class TreeModel;

// The rows the navigation tests start from, and readings of the tree.
// Taxpayer 1 "PEREZ JUAN" owns every premises added here.
namespace nav {

using Seed::AddDeclaration;
using Seed::AddLine;
using Seed::AddTaxpayer;
using Seed::Declaration;
using Seed::kCuit;
using Seed::Pad13;

// A premises with its regime and agent flags.
void AddPremises(const QString& padron, const QString& regimen, const QString& retencion = "0",
                 const QString& percepcion = "0", const QString& objeto = "1",
                 const QString& principal = {}, const QString& cuit = kCuit);

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
