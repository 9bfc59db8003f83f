#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "frame/view/SpanishTranslations.h"

// Qt's own dialogs speak Spanish: the file chooser the import and the
// "Guardar como PDF" open, and the standard buttons of every dialog.
class TstSpanish : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY2(InstallSpanishTranslations(), "qtbase_es not installed"); }

    void standardTexts_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("english");
        QTest::newRow("file chooser folder") << "QFileDialog"
                                             << "Look in:";
        QTest::newRow("file chooser name") << "QFileDialog"
                                           << "File &name:";
        QTest::newRow("file chooser type") << "QFileDialog"
                                           << "Files of type:";
        QTest::newRow("cancel button") << "QPlatformTheme"
                                       << "Cancel";
        QTest::newRow("save button") << "QPlatformTheme"
                                     << "Save";
        QTest::newRow("open button") << "QPlatformTheme"
                                     << "Open";
    }
    void standardTexts()
    {
        QFETCH(QString, context);
        QFETCH(QString, english);
        const QString shown = QCoreApplication::translate(context.toLatin1(), english.toLatin1());
        QVERIFY2(shown != english, qPrintable(english + " stays English"));
    }

    // The non-native file dialog, as the offscreen and plain desktops show it,
    // has no English label left.
    void fileDialogIsSpanish()
    {
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        const QStringList english = {"Look in:", "File name:", "Files of type:", "Save", "Cancel"};
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            QVERIFY2(!english.contains(label->text().remove('&')), qPrintable(label->text()));
        for (const QPushButton* button : dialog.findChildren<QPushButton*>())
            QVERIFY2(!english.contains(button->text().remove('&')), qPrintable(button->text()));
    }
};

QTEST_MAIN(TstSpanish)
#include "tst_spanish.moc"
