#include <QtTest>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QWidget>

#include "BackupTestKit.h"
#include "GuiSupport.h"
#include "TestSupport.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "shell/view/ShellViews.h"

namespace {

// The settings of a first start, and in their folder three copies and files
// that only look like copies: they are not listed.
void fillBackupFolder()
{
    InitBackupSettings();
    const QString folder = DefaultBackupFolder();
    for (const char* name :
         {"Morvel.20240105083000", "Morvel.20240120191512", "Morvel.20240204120000"})
        Kit::write(folder + "/" + name, QByteArray(350000, 'm'));
    for (const char* name : {"Morvel.2024", "Morvel.20240204120000.part", "Morvel.2024020412000X",
                             "Otro.20240204120000"})
        Kit::write(folder + "/" + name, "x");
}

QStringList checks(QListWidget* list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << (list->item(i)->checkState() == Qt::Checked ? "x" : "-");
    return out;
}

} // namespace

// The two backup windows on real widgets, offscreen: the schedule greyed with
// its check, the list of one choice or of several with their ticks.
class TstBackupViews : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { RegisterAllViews(); }

    void backupDialog()
    {
        TestEnv env;
        fillBackupFolder();
        SaveBackupSetting(BackupKey::FechaUlt, "20240204120000");
        frmBackup w;
        QPointer<QWidget> view(Gui::showView(w));
        QVERIFY(view);
        QCOMPARE(view->findChild<QLabel*>("lblFecha")->text(), QString("04/02/2024 12:00:00"));
        QCOMPARE(view->findChild<QLabel*>("lblSize")->text(), QString("1 Mb."));
        auto* group = view->findChild<QGroupBox*>("frmDias");
        QVERIFY(group->isEnabled());

        view->findChild<QCheckBox*>("chkDias")->click();
        QCOMPARE(w["chkDias"].value(), 0);
        QVERIFY(!group->isEnabled());
        QVERIFY(!view->findChild<QWidget*>("txtDias")->isEnabled());
        Gui::closeView(w);
    }

    void filesToRestore()
    {
        TestEnv env;
        fillBackupFolder();
        frmBackupArchivos w;
        QPointer<QWidget> view(Gui::showView(w));
        QVERIFY(view);
        auto* single = view->findChild<QListWidget*>("lst0");
        QVERIFY(single->isVisible());
        QVERIFY(!view->findChild<QListWidget*>("lst1")->isVisible());
        QVERIFY(!view->findChild<QPushButton*>("cmdSelAll")->isVisible());
        QCOMPARE(single->count(), 3);
        QCOMPARE(single->item(1)->text(), QString("Copia del día 20/01/2024 a hs. 19:15:12"));
        QCOMPARE(view->findChild<QPushButton*>("cmdAccion")->text(), QString("Restaurar"));
        Gui::closeView(w);
    }

    void filesToSaveCarryTicks()
    {
        TestEnv env;
        fillBackupFolder();
        frmBackupArchivos w;
        w.AccionGrabar = true;
        w.GrabarDirectorio = env.path("usb");
        QPointer<QWidget> view(Gui::showView(w));
        QVERIFY(view);
        auto* several = view->findChild<QListWidget*>("lst1");
        QVERIFY(several->isVisible());
        QVERIFY(!view->findChild<QListWidget*>("lst0")->isVisible());
        QCOMPARE(checks(several), (QStringList{"-", "-", "-"}));

        several->item(1)->setCheckState(Qt::Checked); // the person ticks one
        QVERIFY(!w.Ticked(0) && w.Ticked(1) && !w.Ticked(2));
        QTest::mouseClick(view->findChild<QPushButton*>("cmdSelAll"), Qt::LeftButton);
        QCOMPARE(checks(several), (QStringList{"x", "x", "x"}));
        QTest::mouseClick(view->findChild<QPushButton*>("cmdSelNone"), Qt::LeftButton);
        QCOMPARE(checks(several), (QStringList{"-", "-", "-"}));
        w.SetTicked(0, true);
        QCOMPARE(checks(several), (QStringList{"x", "-", "-"}));

        // The status shown while working is cleared when the work ends.
        w["lbl"].setText("Restaurando base de datos desde archivo...");
        QCOMPARE(view->findChild<QLabel*>("lbl")->text(), w["lbl"].text());
        w["lbl"].setText(QString());
        QCOMPARE(view->findChild<QLabel*>("lbl")->text(), QString());
        Gui::closeView(w);
    }

    // A backup of another program chosen in the real restore window: the
    // person is told what is wrong with it in a real message box, and the
    // database stays as it was. (Every kind of tampering is refused alike
    // through the scripted windows of the backup test.)
    void tamperedBackupThroughTheRealWindow()
    {
        QtUi port;
        TestEnv env;
        env.createDatabase();
        Kit::addTaxpayers({"INTACTO"});
        CloseDatabase();
        const QByteArray before = ReadBytes(DatabasePath());
        const QString archive = env.path("usb/Morvel.20240101120000");
        QDir().mkpath(env.path("usb"));
        Kit::tamperedBackup("foreign database", archive, before);
        setUi(&port);
        Gui::MessageWatch person(Gui::MessageWatch::Answer::GoAhead);
        frmBackupArchivos w;
        w.RestauraDirectorio = env.path("usb");
        QPointer<QWidget> view(Gui::showView(w));
        QVERIFY(view);
        auto* list = view->findChild<QListWidget*>("lst0");
        QCOMPARE(list->count(), 1);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(0)).center());
        QTest::mouseClick(view->findChild<QPushButton*>("cmdAccion"), Qt::LeftButton);

        QCOMPARE(person.texts().size(), 2);
        QVERIFY(person.texts().last().startsWith(Kit::kFailed + "\n\n"));
        QVERIFY2(person.texts().last().contains("es una base de datos de otro programa"),
                 qPrintable(person.texts().last()));
        QVERIFY(w.isLoaded());
        QCOMPARE(ReadBytes(DatabasePath()), before);
        Gui::closeView(w);
        setUi(&env.ui());
    }
};

QTEST_MAIN(TstBackupViews)
#include "tst_backup_views.moc"
