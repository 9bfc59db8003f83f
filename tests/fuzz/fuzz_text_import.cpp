// The text import over any bytes: the first byte picks the form, whether the
// declaration is a rectification and how questions are answered; the rest is
// the file. Every line is read, checked and stored or refused with a message,
// and nothing crashes. Each input's rows are undone afterwards, so that every
// input meets the same database.
#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>

#include "DetailImporter.h"
#include "FuzzSupport.h"
#include "Globals.h"
#include "ImportRule.h"
#include "RegionalSettings.h"
#include "Transaction.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "database/Schema.h"

namespace {

const char* const kForms[] = {"F976", "F2001", "F977", "F978", "F985", "F987"};

// Answers every question by the bits of the input's first byte, in turn.
class FuzzUi : public UiPort
{
public:
    unsigned answers = 0;
    int messageBox(const QString&, int style, const QString&) override
    {
        if ((style & 0x7) != Msg::YesNo)
            return Msg::Ok;
        answers = (answers >> 1) | (answers << 7);
        return (answers & 1) ? Msg::Yes : Msg::No;
    }
    void showModal(Controller&) override {}
    void showModeless(Controller&) override {}
    void yield() override {}
    QString chooseFolder(const QString&) override { return {}; }
    QString chooseOpenFile(const QString&, const QString&, const QString&) override { return {}; }
    QString chooseSaveFile(const QString&, const QString&, const QString&) override { return {}; }
    bool openDocument(const QString&) override { return false; }
    void setBusy(bool) override {}
    void endProgram() override {}
};

FuzzUi* g_ui = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    static QTemporaryDir dir;
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.filePath("settings"));
    Regional::reload();
    SetAppPath(dir.filePath("data"));
    gDecimalSymbol = QStringLiteral(",");
    g_ui = new FuzzUi;
    setUi(g_ui);
    CreateCurrentDatabase();
    gAccess().Execute(
        QStringLiteral("INSERT INTO tPadronesComerciales (padron, objeto, cuit) VALUES "
                       "('0000000012345', '0000000000007', '20123456786')"));
    // Closed at the end as the program closes it, before the statics that
    // hold the connection go.
    std::atexit([] { CloseDatabase(); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const uint8_t choice = data[0];
    const QString form = QString::fromLatin1(kForms[(choice & 0x7) % 6]);
    const bool rect = choice & 0x8;
    g_ui->answers = choice >> 4 | 0x50;
    const QString path = FuzzInputFile(".txt", data + 1, size - 1);
    const QString parametros =
        QStringLiteral("Padron=0000000012345 - Objeto N° 0000000000007;Anio=2024;Periodo=03;"
                       "Formulario=") +
        form + QStringLiteral(";Rectificativa=") +
        (rect ? QStringLiteral("Verdadero;FechaRectificativa=10-04-2024")
              : QStringLiteral("Falso;FechaRectificativa=0")) +
        QStringLiteral(";ctrl=0;idContribuyente=1;");
    Transaction undone(Transaction::Mode::AllOrNothing);
    {
        DetailImporter importer(*ImportRule::Find(form), parametros, 0, 0, nullptr);
        importer.ImportarTexto(path);
    }
    undone.rollback();
    return 0;
}
