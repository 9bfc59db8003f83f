#pragma once

#include <QString>
#include <QStringList>

// The taxpayer that the manual's pictures show: GOMEZ JUAN CARLOS, with a
// premises under the general regime, one under PROCOM and one that is a
// retention and perception agent. March 2024 holds a declaration of every form
// each premises may file, February 2024 a general return and its
// rectification. The rows are written as the windows save them.
namespace SampleData {

inline const QString kNombre = QStringLiteral("GOMEZ JUAN CARLOS");
inline const QString kCuit = QStringLiteral("20-12345678-6");
inline const int kId = 1;

// A premises of the taxpayer: padrón and objeto, thirteen digits each.
struct Premises {
    QString padron;
    QString objeto;
};

inline const Premises kGeneral{QStringLiteral("0000000004520"), QStringLiteral("0000000000001")};
inline const Premises kProcom{QStringLiteral("0000000009034"), QStringLiteral("0000000000001")};
inline const Premises kAgente{QStringLiteral("0000000007815"), QStringLiteral("0000000000001")};

// The period of the pictures, as the tree names it.
inline const QString kAnio = QStringLiteral("2024");
inline const QString kMes = QStringLiteral("03");

// Writes the taxpayers, premises, activities and declarations.
void Insert();

// The caption (and key) of a premises node in the taxpayer's tree.
QString PremisesNode(const Premises& premises);

// The parameter string of a stored declaration, as the tree's node gives it
// once the dispatcher has read it.
QString Declaration(const Premises& premises, const QString& form);

} // namespace SampleData
