#include "frmAbout.h"

#include <QSysInfo>

#include "Principal.h"
#include "UiPort.h"

void frmAbout::design()
{
    setCaption(QStringLiteral("Acerca de ") + AppTitle());
    add(QStringLiteral("lblTitle"), FieldKind::Label, AppTitle());
    add(QStringLiteral("lblVersion"), FieldKind::Label,
        QStringLiteral("Versión %1.%2.%3")
            .arg(MORVEL_VERSION_MAJOR)
            .arg(MORVEL_VERSION_MINOR)
            .arg(MORVEL_VERSION_PATCH));
    add(QStringLiteral("lblFecha"), FieldKind::Label, QStringLiteral("(07/01/2015)"));
    add(QStringLiteral("lblDescription"), FieldKind::Label,
        QStringLiteral("Declaraciones Juradas mensuales de la T.I.S.S.H. para contribuyentes, "
                       "agentes de retención y de percepción del municipio."));
    add(QStringLiteral("cmdOK"), FieldKind::Button, QStringLiteral("Aceptar"));
    add(QStringLiteral("cmdSysInfo"), FieldKind::Button, QStringLiteral("&Info. del Sistema..."));

    on(QStringLiteral("cmdOK"), Ev::Click, [this](EventArgs&) { unload(); });
    on(QStringLiteral("cmdSysInfo"), Ev::Click, [](EventArgs&) {
        MsgBox(SystemInformation(), Msg::Information, QStringLiteral("Información del Sistema"));
    });
}

QString frmAbout::SystemInformation()
{
    return QStringLiteral("Sistema operativo: %1\nNúcleo: %2 %3\nArquitectura: %4\nQt: %5")
        .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
             QSysInfo::currentCpuArchitecture(), QString::fromLatin1(qVersion()));
}
