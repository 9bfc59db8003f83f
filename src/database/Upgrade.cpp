#include "Upgrade.h"

void VerifyDatabase(const QString&, Inicial&) {}
void ApplyUpgrades(Inicial&) {}
void UpgradeAddGuidColumns() {}
QString CommaDecimalFromDotted(const QString& text) { return text; }
