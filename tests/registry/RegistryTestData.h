#pragma once

#include <QStringList>

#include "Controller.h"
#include "Db.h"
#include "Person.h"
#include "Seed.h"

// Taxpayers and premises as the registry stores them, and the way a person
// fills in a premises.
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

// A stored premises, as given, with its principal activity; no fantasy name
// is Null.
inline void insertPremises(const QString& cuit, const QString& padron, const QString& objeto,
                           const QString& fantasia, bool principal = false)
{
    Seed::AddPremises(padron, objeto,
                      {"idContribuyente=1", "cuit=" + cuit, "padron=" + padron, "objeto=" + objeto,
                       "grupo=A", "cp=9180",
                       "nombre_fantasia=" + (fantasia.isEmpty() ? "<null>" : fantasia),
                       "Principal=" + QString(principal ? "X" : "<null>")});
    Db::insert("Actividades_x_padrones", {"cuit=" + cuit, "padron=" + padron, "objeto=" + objeto,
                                          "ActP=" + kBovino, "ActP_Desc=" + kBovinoName});
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
