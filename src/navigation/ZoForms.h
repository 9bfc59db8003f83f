#pragma once

#include <QHash>
#include <QString>
#include <memory>

#include "DeclarationForm.h"
#include "Recordset.h"
#include "TreeIndex.h"

class Field;
class TreeBuild;
class TreeModel;
class TreePlace;

// The shared dispatcher of the declarations: it builds the taxpayer's tree
// (options, premises, years, months, declarations and the forms that may be
// started), opens years and months, copies a period, and turns a node's
// parameter string into the right form. One instance serves the application
// (gForms); it keeps one reusable instance of each form and the header record
// it last handed to each.
class ZoForms
{
public:
    ZoForms();
    ~ZoForms();
    ZoForms(const ZoForms&) = delete;
    ZoForms& operator=(const ZoForms&) = delete;

    // --- The tree -----------------------------------------------------------

    // Clears the tree and adds the two options on the taxpayer.
    void FillTreeViewContribuyenteOpciones(Field& tree, const QString& idContribuyente);
    // Adds the premises with their years, months and declarations, and the
    // forms each month may start.
    void FillTreeViewLocales(Field& tree, const QString& idContribuyente);
    // Adds to one month node the forms of `forms` that it may start.
    void FillTreeViewPeriodo(const RecordsetPtr& forms, Field& tree, int monthNode);
    // Whether a node answers `key`: among the selected node's children for a
    // key that begins "Anio=" or "Periodo="; a node of the other main form
    // when a regime is given; otherwise any node whose key holds the text.
    bool VerifyNode(const QString& key, Field& tree, const QString& regimen = {});
    // The forms a premises may start, by its flags and regime, in their order.
    RecordsetPtr GetSelectFormulariosNuevos(const QString& retencion, const QString& percepcion,
                                            const QString& regimen);
    static QString SelectFormulariosNuevosSql(const QString& retencion, const QString& percepcion,
                                              const QString& regimen);
    // False for the main form that does not belong to the regime.
    static bool VerificaRegimen(const QString& regimen, const QString& formulario);

    // --- Years, periods and the period copy -------------------------------

    void FillTreeViewNuevoAnio(Field& tree, const QString& anio, const QString& idContribuyente,
                               const QString& selectedKey);
    void FillTreeViewNuevoPeriodo(Field& tree, const QString& periodo, int yearNode,
                                  const QString& idContribuyente, const QString& padron,
                                  const QString& objeto, const QString& retencion,
                                  const QString& percepcion, const QString& regimen);
    // Copies the original declarations of a model month into a new month.
    void InsertCopiaDDJJ(const QString& idContribuyente, const QString& periodoModelo,
                         const QString& anioModelo, const QString& anio, const QString& periodo,
                         const QString& padron, const QString& objeto);

    // --- Dispatch ---------------------------------------------------------

    // Acts on the selected node of the tree; `result` is 2 when the taxpayer
    // was deleted. The tree is rebuilt afterwards in the person's place.
    void ShowForm(Field& tree, const QString& idContribuyente, int& result);
    // Rebuilds the whole tree from the tables and puts it back in the place
    // the person left it.
    void Refill(Field& tree, const QString& idContribuyente);
    // Reads the declaration named by the string into the form's header record
    // and shows the form modally.
    void CargaForm(QString parameters, const QString& formulario);

    // The header record last handed to a form.
    DeclarationHeader Encabezado(const QString& formulario) const;
    // The reusable instance of a form, created on first use; nullptr when no
    // form is registered under that id.
    DeclarationForm* Formulario(const QString& formulario);

    // Deletes a premises and everything it holds; an empty objeto takes every
    // objeto of the padrón.
    void DeletePadron(const QString& padron, const QString& objeto);
    // The number of registered versions of the declaration's kind (original
    // or rectification) for its form and period.
    int CountVersions(const QString& parameters);

private:
    void refill(Field& tree, const QString& idContribuyente, const TreePlace& place);
    static void addOptions(TreeModel& tree, const QString& idContribuyente);
    bool fillLocales(Field& tree, const QString& idContribuyente);
    void addDeclarations(TreeBuild& build, const QString& premisesKey, const QString& padron,
                         const QString& objeto);
    void fillPeriodo(TreeBuild& build, const Recordset& forms, int monthNode);
    bool offersAnnex(TreeBuild& build, const QString& formulario, const QString& regimen,
                     const QString& monthKey, const QString& padron, const QString& objeto);
    bool deleteTaxpayer(const QString& idContribuyente);

    TreeIndex m_index;
    QHash<QString, std::shared_ptr<DeclarationForm>> m_forms;
    QHash<QString, DeclarationHeader> m_headers;
};

// The application's one dispatcher, created on first use.
ZoForms& gForms();
// Drops it (and the forms it keeps) with the database it worked on.
void ResetForms();
