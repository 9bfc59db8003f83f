#include "MMain.h"

#include "Globals.h"
#include "Inicial.h"
#include "Numbers.h"
#include "Principal.h"
#include "UiPort.h"
#include "Util.h"
#include "backup/Backup.h"
#include "database/RegionalGuard.h"
#include "database/Schema.h"
#include "database/Upgrade.h"
#include "declarations/FormulariosDDJJ.h"

bool Main(const QString& dataFolder)
{
    SetAppPath(dataFolder);
    const QString databasePath = DatabasePath();
    if (!CheckRegionalSettings())
        return false;
    // Another program's file, or one that is not a database, is never
    // written: the person is told and the run ends here.
    if (!IsOwnDatabase())
        return false;

    Inicial splash;
    splash.show(false);
    ui().yield();
    AdvanceSplash(splash, 0, QStringLiteral("Verificando Base de Datos..."));
    // A new data folder has no database yet: the base tables stand in for
    // the database that came with the installation. A database that can only
    // be read, or a base that could not be made, is left untouched.
    const bool usable = WritableDatabase() && EnsureBaseSchema();
    if (usable)
        VerifyDatabase(databasePath, splash);
    AdvanceSplash(splash, 0, QStringLiteral("Aplicando mejoras..."));
    if (usable) {
        ApplyUpgrades(splash);
        UpgradeAddGuidColumns();
        EnsureIndices();
        MarkDatabase();
    }

    ui().setBusy(true);
    gDecimalSymbol = GetDecimalSymbol();
    InitBackupSettings();
    RunScheduledBackup(0);
    InitImportColumnNames();
    RegistrarFormularios();
    gPrincipal().show(false);
    splash.unload();
    ui().setBusy(false);
    return true;
}
