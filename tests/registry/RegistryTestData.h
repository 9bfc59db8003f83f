#pragma once

#include <QStringList>

#include "Controller.h"
#include "Globals.h"
#include "Person.h"
#include "ZoAccess.h"

// Rows of the registry tables put in place and read back by the registry
// tests, and the way a person fills in a premises.
namespace Reg {

// Two right CUITs (weights 5 4 3 2 7 6 5 4 3 2 1, sum a multiple of 11).
inline const QString kCuit = QStringLiteral("20123456786");
inline const QString kCuitMasked = QStringLiteral("20-12345678-6");
inline const QString kOtherCuit = QStringLiteral("30712345671");
inline const QString kOtherCuitMasked = QStringLiteral("30-71234567-1");

// Activities of the catalogue every database comes with.
inline const QString kBovino = QStringLiteral("101011");
inline const QString kBovinoName = QStringLiteral("Matanza de ganado bovino");
inline const QString kFiambres = QStringLiteral("101040");
inline const QString kFiambresName = QStringLiteral("Fabricación de fiambres y embutidos");

// Each row of the statement, its cells joined by "|", Null shown as <null>.
inline QStringList rows(const QString& sql)
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(sql);
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        QStringList cells;
        for (int i = 0; i < rs->FieldCount(); ++i)
            cells << (rs->IsNull(i) ? QStringLiteral("<null>") : rs->Text(i));
        out << cells.join(u'|');
    }
    return out;
}

inline int count(const QString& table, const QString& where = QString())
{
    return gAccess().GetInteger("SELECT COUNT(*) FROM " + table +
                                (where.isEmpty() ? QString() : " WHERE " + where));
}

inline void insertTaxpayer(int id, const QString& name, const QString& maskedCuit)
{
    gAccess().Execute(QString("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, Cuit) "
                              "VALUES (%1, '%2', '%3')")
                          .arg(id)
                          .arg(name, maskedCuit));
}

// A stored premises with its principal activity; no fantasy name is Null.
inline void insertPremises(const QString& cuit, const QString& padron, const QString& objeto,
                           const QString& fantasia, bool principal = false)
{
    gAccess().Execute(
        QString("INSERT INTO tPadronesComerciales (idContribuyente, cuit, padron, objeto, grupo, "
                "razon_social, nombre_fantasia, percepcion, retencion, regimen, cp, Principal) "
                "VALUES (1, '%1', '%2', '%3', 'A', 'RAZON', %4, '0', '0', '0', '9180', %5)")
            .arg(cuit, padron, objeto, fantasia.isEmpty() ? "NULL" : "'" + fantasia + "'",
                 principal ? "'X'" : "NULL"));
    gAccess().Execute(QString("INSERT INTO Actividades_x_padrones (cuit, padron, objeto, ActP, "
                              "ActP_Desc) VALUES ('%1', '%2', '%3', '%4', '%5')")
                          .arg(cuit, padron, objeto, kBovino, kBovinoName));
}

inline void insertDeclaration(const QString& padron, const QString& objeto)
{
    gAccess().Execute(QString("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES "
                              "('%1', '%2', '2024-03', 'F976', 'False', '0', '0')")
                          .arg(padron, objeto));
}

// What a person types into the premises dialog.
struct Premises {
    QString padron = {};
    QString objeto = {};
    QChar grupo = u'A';
    QString razonSocial = QStringLiteral("COMERCIAL SUR");
    QString fantasia = {};
    QString actividad = kBovino;
    bool general = true;
    bool procom = false;
    bool percepcion = false;
    bool retencion = false;
    QString calle = {};
    QString suscriptor = QStringLiteral("JUAN PEREZ");
    QString caracter = QStringLiteral("TITULAR");
};

inline void typePremises(Controller& w, const Premises& in)
{
    Person p(w);
    p.type("txtPadron", in.padron);
    p.type("txtObjeto", in.objeto);
    p.key("txtGrupo", in.grupo.unicode());
    p.type("txtRazonSocial", in.razonSocial);
    p.type("txtNombreFantasia", in.fantasia);
    p.check("chkRegimenGeneral", in.general);
    p.check("chkRegimenProcom", in.procom);
    p.check("chkPercepcion", in.percepcion);
    p.check("chkRetencion", in.retencion);
    p.type("txtIdPrincipal", in.actividad);
    p.leave("txtIdPrincipal");
    if (!in.calle.isEmpty())
        p.type("txtCalleNumero", in.calle);
    p.type("txtSuscriptor", in.suscriptor);
    p.type("txtCaracter", in.caracter);
}

inline void addPremises(Controller& w, const Premises& in)
{
    typePremises(w, in);
    Person(w).click("cmdAceptar");
}

} // namespace Reg
