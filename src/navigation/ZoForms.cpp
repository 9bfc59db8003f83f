#include "ZoForms.h"

#include <algorithm>
#include <optional>
#include <tuple>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "DeclarationReader.h"
#include "ErrorLog.h"
#include "Field.h"
#include "FormTables.h"
#include "Globals.h"
#include "NavigationText.h"
#include "Numbers.h"
#include "PadronCascade.h"
#include "PeriodCopy.h"
#include "SeleccionFormulario.h"
#include "SqlText.h"
#include "Transaction.h"
#include "TreePlace.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoParameterString.h"
#include "registry/Contribuyentes.h"

namespace {

std::unique_ptr<ZoForms> g_forms;

const QString kCarpeta = QStringLiteral("Carpeta");
const QString kLocCom = QStringLiteral("LocCom");
const QString kAtencion = QStringLiteral("Atención !");
const QString kF976 = QStringLiteral("F976");
const QString kF2001 = QStringLiteral("F2001");
const QString kF977 = QStringLiteral("F977");
const QString kF978 = QStringLiteral("F978");

// The key of a form not yet started, after its month's key and its id.
const QString kNewFormTail = QStringLiteral(
    ";Rectificativa=Falso;FechaRectificativa=0;FechaRectificativaNueva=0;Nuevo=Verdadero;"
    "ConDatos=Falso;idEncFormulario=-1;ctrl=0");

QString read(const QString& parameters, const QString& key)
{
    return gParameters().ReadValue(parameters, key);
}

// The text after `marker` in a tree key, `length` characters of it.
QString after(const QString& key, const QString& marker, int length)
{
    const int at = int(key.indexOf(marker));
    return at < 0 ? QString() : key.mid(at + marker.size(), length);
}

const QString kFormularioTag = QStringLiteral(";Formulario=");
const QString kStoredTag = QStringLiteral(";Nuevo=Falso;ConDatos=Verdadero;Rectificativa=");
const QString kFechaTag = QStringLiteral(";FechaRectificativa=");
const QString kCtrlTag = QStringLiteral(";ctrl=");

// Whether the ctrl of a declaration's key, read as any parameter string is
// read, is "". The reading takes the first "ctrl" of the key (in any case) up
// to the next ";": when none of the texts the key was joined from holds
// "ctrl" (the tags between them cannot make one) and the value holds no ";",
// that is the value itself, and the string need not be read.
bool ctrlReadsEmpty(const QString& key, bool partsHoldCtrl, const QString& ctrl)
{
    if (partsHoldCtrl || ctrl.contains(u';') || key.size() >= 30000)
        return read(key, QStringLiteral("ctrl")).isEmpty();
    return ctrl.isEmpty();
}

// Adds a node under `parent`, as an add under the parent's key would; gives
// the node of that key, new or already there, or -1 without a parent.
int addBelow(TreeModel& model, int parent, const QString& key, const QString& text,
             const QString& image)
{
    if (parent < 0)
        return -1;
    const int added = model.addUnder(parent, key, text, image);
    return added >= 0 ? added : model.indexOf(key);
}

bool holdsCtrl(QStringView text)
{
    // Plain ASCII, as the stored values are, is looked through at once.
    const auto lower = [](char16_t c) { return char16_t(c >= u'A' && c <= u'Z' ? c + 32 : c); };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (c >= 0x80)
            return text.contains(u"ctrl", Qt::CaseInsensitive);
        if (lower(c) == u'c' && i + 3 < text.size() && lower(text.at(i + 1).unicode()) == u't' &&
            lower(text.at(i + 2).unicode()) == u'r' && lower(text.at(i + 3).unicode()) == u'l')
            return true;
    }
    return false;
}

// The padrón of a month's key, which begins with its premises' caption (or,
// in a dispatched string, with "Padron=").
QString padronOfKey(const QString& key)
{
    const QString marker = key.contains(QStringLiteral("Padrón N° ")) ? QStringLiteral("Padrón N° ")
                                                                      : QStringLiteral("Padron=");
    return after(key, marker, 13);
}

// Which forms each regime and pair of agent flags may start. A flag is off
// only when it reads exactly "0".
struct Offer {
    const char* regimen;
    bool retencion;
    bool percepcion;
    const char* forms;
};

const Offer kOffers[] = {
    {"0", true, false, "'F976','F986','F978','F977','F985'"},
    {"0", false, true, "'F976','F978','F988','F977','F987'"},
    {"0", true, true, "'F976','F978','F986','F988','F977','F985','F987'"},
    {"0", false, false, "'F976','F978','F977'"},
    {"1", true, false, "'F2001','F986','F978','F977','F985'"},
    {"1", false, true, "'F2001','F978','F988','F977','F987'"},
    {"1", true, true, "'F2001','F978','F986','F988','F977','F985','F987'"},
    {"1", false, false, "'F2001','F978','F977'"},
    {"2", true, false, "'F985','F986'"},
    {"2", false, true, "'F987','F988'"},
    {"2", true, true, "'F985','F986','F987','F988'"},
};

// Hands back to the system the memory the build's rows and look-ups took
// and gave up: the heap keeps it otherwise for as long as the window stands.
void releaseFreedMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

// A declaration of a premises, as its node in the tree is made of it.
struct DeclarationRow {
    QString period, id, rect, date, ctrl, caption;
    bool operator==(const DeclarationRow&) const = default;
};

// The statement whose rows, in its order, the nodes are made of.
const QString kDeclarationsRead = QStringLiteral(
    "SELECT pf.Periodo, pf.idFormulario, pf.Rectificativa, pf.FechaRectificativa, pf.ctrl, "
    "fo.LeyendaGenerado FROM TPadrones_Formularios pf, Formularios fo WHERE pf.idFormulario = "
    "fo.idFormulario AND pf.padron = ");
const QString kDeclarationsOrder =
    QStringLiteral(" ORDER BY right(pf.Periodo,4), mid(pf.Periodo,1,2), fo.Orden, pf.id, "
                   "pf.FechaRectificativa DESC");

// Where a declaration goes in the tree's order: its period's year and month
// (as yyyymm), its form's order, its row.
struct DeclarationPlace {
    int period = 0;
    qint64 orden = 0, rowId = 0;
    int index = 0;
};

bool before(const DeclarationPlace& a, const DeclarationPlace& b)
{
    return std::tie(a.period, a.orden, a.rowId) < std::tie(b.period, b.orden, b.rowId);
}

// The digits of `text` as a number, when it is `width` ASCII digits.
std::optional<int> digits(QStringView text, int width)
{
    if (text.size() != width)
        return std::nullopt;
    int value = 0;
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value;
}

// A form id of capital ASCII letters and digits only: two such ids are equal
// to the engine, whatever its collation, exactly when they are the same text.
bool plainId(const TextRow& row, int column, const QString& id)
{
    if (row.isNull(column))
        return false;
    return std::all_of(id.begin(), id.end(), [](QChar c) {
        return (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    });
}

struct FormOrder {
    QString leyenda;
    qint64 orden = 0;
};

// The forms by id with their legends and orders, when every id is plain and
// every order a whole number; nullopt otherwise.
std::optional<QHash<QString, QVector<FormOrder>>> plainForms(ZoAccess& db)
{
    QHash<QString, QVector<FormOrder>> forms;
    bool plain = true;
    const bool read = db.ReadTexts(
        QStringLiteral("SELECT idFormulario, LeyendaGenerado, Orden FROM Formularios"),
        [&](const TextRow& row) {
            if (row.isNull(0))
                return; // joins no declaration
            const std::optional<qint64> orden = row.integer(2);
            const QString id = row.text(0);
            plain = plain && plainId(row, 0, id) && orden;
            if (plain)
                forms[id].push_back({row.text(1), *orden});
        });
    if (!read || !plain)
        return std::nullopt;
    return forms;
}

// The declarations of a premises joined to their forms and put in the
// statement's order here: nullopt when any row's order or join is not
// certain to be the engine's (a period, an id or an order of another form),
// or when the rows could not be read.
std::optional<QVector<DeclarationRow>> placedDeclarations(ZoAccess& db, const QString& padron,
                                                          const QString& objeto)
{
    const std::optional<QHash<QString, QVector<FormOrder>>> forms = plainForms(db);
    if (!forms)
        return std::nullopt;
    QVector<DeclarationRow> rows;
    std::vector<DeclarationPlace> places;
    bool placed = true;
    DeclarationRow last;
    const auto take = [&](const TextRow& row) {
        if (!placed)
            return;
        last = {row.sharedText(0, last.period), row.sharedText(1, last.id),
                row.sharedText(2, last.rect),   row.sharedText(3, last.date),
                row.sharedText(4, last.ctrl),   last.caption};
        const std::optional<int> year = digits(QStringView(last.period).right(4), 4);
        const std::optional<int> month = digits(QStringView(last.period).left(2), 2);
        const std::optional<qint64> rowId = row.integer(5);
        placed = !row.isNull(0) && year && month && rowId && plainId(row, 1, last.id);
        if (!placed)
            return;
        for (const FormOrder& form : forms->value(last.id)) {
            last.caption = form.leyenda;
            places.push_back({*year * 100 + *month, form.orden, *rowId, int(rows.size())});
            rows.push_back(last);
        }
    };
    const bool read = db.ReadTexts(
        QStringLiteral("SELECT Periodo, idFormulario, Rectificativa, FechaRectificativa, ctrl, id "
                       "FROM TPadrones_Formularios WHERE padron = ") +
            Quoted(padron) + QStringLiteral(" AND objeto = ") + Quoted(objeto),
        take);
    if (!read || !placed)
        return std::nullopt;
    std::stable_sort(places.begin(), places.end(), before);
    // Two rows of one place are one declaration joined to two forms of one
    // id and order: alike, they may come in any order; different, only the
    // engine can tell theirs.
    for (size_t i = 1; i < places.size(); ++i)
        if (!before(places[i - 1], places[i]) &&
            !(rows.at(places[i - 1].index) == rows.at(places[i].index)))
            return std::nullopt;
    QVector<DeclarationRow> ordered;
    ordered.reserve(rows.size());
    for (const DeclarationPlace& place : places)
        ordered.push_back(std::move(rows[place.index]));
    return ordered;
}

// The declarations of a premises, once for each of its rows in the premises
// table, in the order of year, month, form's order, row Id and
// rectification date (latest first). The rows are read as they come and
// joined and ordered here, unless that cannot be certain to give the
// engine's rows and order: then the engine joins and orders them.
QVector<DeclarationRow> readDeclarations(const QString& padron, const QString& objeto)
{
    ZoAccess& db = gAccess();
    // Every premises row of the padrón and objeto gives each declaration
    // once more, alike and next to each other.
    const int copies = db.GetLong(
        QStringLiteral("SELECT count(*) FROM tPadronesComerciales WHERE padron = ") +
        Quoted(padron) + QStringLiteral(" AND objeto = ") + Quoted(objeto));
    if (copies <= 0)
        return {};
    std::optional<QVector<DeclarationRow>> rows = placedDeclarations(db, padron, objeto);
    if (!rows) {
        rows.emplace();
        DeclarationRow last;
        const auto take = [&](const TextRow& row) {
            last = {row.sharedText(0, last.period), row.sharedText(1, last.id),
                    row.sharedText(2, last.rect),   row.sharedText(3, last.date),
                    row.sharedText(4, last.ctrl),   row.sharedText(5, last.caption)};
            rows->push_back(last);
        };
        if (!db.ReadTexts(kDeclarationsRead + Quoted(padron) +
                              QStringLiteral(" AND pf.objeto = ") + Quoted(objeto) +
                              kDeclarationsOrder,
                          take))
            return {};
    }
    if (copies == 1)
        return *rows;
    QVector<DeclarationRow> copied;
    copied.reserve(rows->size() * copies);
    for (const DeclarationRow& row : std::as_const(*rows))
        copied.insert(copied.size(), copies, row);
    return copied;
}

} // namespace

// One build of (part of) the tree: the tree being filled and what its
// statements answered, so that a month asks the database only what no other
// month of the same build asked before. Nothing writes to the tables while a
// build runs, so every answer stays what the statement would give again.
class TreeBuild
{
public:
    explicit TreeBuild(Field& tree) : field(tree), model(tree.tree()) {}

    QString regimen(const QString& padron, const QString& objeto)
    {
        const QString key = padron + u'|' + objeto;
        auto it = m_regimen.constFind(key);
        if (it == m_regimen.cend())
            it = m_regimen.insert(
                key,
                gAccess()
                    .GetString(QStringLiteral("Select regimen from tPadronesComerciales "
                                              "where padron = ") +
                               Quoted(padron) + QStringLiteral(" and Objeto = ") + Quoted(objeto))
                    .trimmed());
        return *it;
    }

    // The first value of `column` in `table` for the month, latest Id first:
    // all months of a premises are read in one statement.
    QString latestAmount(const QString& table, const QString& column, const QString& padron,
                         const QString& objeto, const QString& period)
    {
        const QString key = table + u'|' + padron + u'|' + objeto;
        auto it = m_amounts.find(key);
        if (it == m_amounts.end())
            it = m_amounts.insert(key, readAmounts(table, padron, objeto));
        return it->value(period + u'|' + column.toLower());
    }

    Field& field;
    TreeModel& model;

private:
    static QHash<QString, QString> readAmounts(const QString& table, const QString& padron,
                                               const QString& objeto)
    {
        QHash<QString, QString> out;
        const RecordsetPtr rs = gAccess().FillRecordSet(
            QStringLiteral("SELECT periodo, retenciones, percepciones FROM ") + table +
            QStringLiteral(" WHERE padron = ") + Quoted(padron) + QStringLiteral(" and objeto = ") +
            Quoted(objeto) + QStringLiteral(" ORDER BY Id DESC"));
        for (; rs && !rs->EOF_(); rs->MoveNext()) {
            const QString period = rs->Text(0);
            for (const char* column : {"retenciones", "percepciones"}) {
                const QString key = period + u'|' + QString::fromLatin1(column);
                if (!out.contains(key))
                    out.insert(key, rs->Text(QString::fromLatin1(column)));
            }
        }
        return out;
    }

    QHash<QString, QString> m_regimen;
    QHash<QString, QHash<QString, QString>> m_amounts;
};

ZoForms& gForms()
{
    static const bool released = [] {
        OnCloseDatabase(ResetForms);
        return true;
    }();
    Q_UNUSED(released);
    if (!g_forms)
        g_forms = std::make_unique<ZoForms>();
    return *g_forms;
}

void ResetForms()
{
    g_forms.reset();
}

ZoForms::ZoForms() = default;
ZoForms::~ZoForms() = default;

// --- The tree -------------------------------------------------------------------

void ZoForms::FillTreeViewContribuyenteOpciones(Field& tree, const QString& idContribuyente)
{
    addOptions(tree.tree(), idContribuyente);
    tree.treeChanged();
}

void ZoForms::addOptions(TreeModel& model, const QString& idContribuyente)
{
    model.clear();
    model.add({}, QStringLiteral("Modificar=0;idContribuyente=") + idContribuyente,
              QStringLiteral("Modificar datos personales"), QStringLiteral("Modificar"));
    model.add({}, QStringLiteral("Eliminar=0;idContribuyente=") + idContribuyente,
              QStringLiteral("Eliminar Contribuyente"), QStringLiteral("Eliminar"));
}

void ZoForms::FillTreeViewLocales(Field& tree, const QString& idContribuyente)
{
    if (fillLocales(tree, idContribuyente))
        tree.treeChanged();
}

// Adds the premises and all below them; false when nothing was added.
bool ZoForms::fillLocales(Field& tree, const QString& idContribuyente)
{
    const QString id = idContribuyente.trimmed();
    if (id.isEmpty() || id == QLatin1String("0"))
        return false;
    ZoAccess& db = gAccess();
    QString cuit =
        db.GetString(QStringLiteral("Select cuit from Contribuyentes where idContribuyente = ") +
                     QString::number(id.toLongLong()))
            .trimmed();
    cuit.remove(u'-');
    if (cuit.isEmpty()) // no taxpayer, or one without a CUIT to join premises by
        return false;
    const RecordsetPtr premises = db.FillRecordSet(
        QStringLiteral("Select padron, objeto, retencion, percepcion, regimen from "
                       "tPadronesComerciales where Cuit = ") +
        Quoted(cuit));
    if (!premises || premises->RecordCount() == 0)
        return false;
    TreeBuild build(tree);
    const int root = build.model.add({}, kLocCom, QStringLiteral("Padrones Comerciales"), kCarpeta);
    if (root >= 0)
        build.model.node(root).expanded = true;
    for (; !premises->EOF_(); premises->MoveNext()) {
        const QString padron = premises->Text(QStringLiteral("padron"));
        const QString objeto = premises->Text(QStringLiteral("objeto"));
        const QString key = PremisesCaption(padron, objeto);
        build.model.add(kLocCom, key, key, kCarpeta);
        m_index.sync(build.model);
        const int earlierMonths = int(m_index.months().size());
        addDeclarations(build, key, padron, objeto);
        const RecordsetPtr forms =
            GetSelectFormulariosNuevos(premises->Text(QStringLiteral("retencion")).trimmed(),
                                       premises->Text(QStringLiteral("percepcion")).trimmed(),
                                       premises->Text(QStringLiteral("regimen")).trimmed());
        if (!forms || forms->RecordCount() == 0)
            continue;
        // Each premises offers its forms in its own months. (A walk over all
        // the months of the tree would visit those of the earlier premises
        // again, and hand them the forms of this one's flags.)
        m_index.sync(build.model);
        const QVector<int> months = m_index.months().mid(earlierMonths);
        for (int month : months)
            fillPeriodo(build, *forms, month);
    }
    build.model.squeeze();
    // What the build looked up is asked again only when the person adds a
    // year or a month: the index is made anew then rather than held.
    m_index.release();
    releaseFreedMemory();
    return true;
}

void ZoForms::addDeclarations(TreeBuild& build, const QString& premisesKey, const QString& padron,
                              const QString& objeto)
{
    const QVector<DeclarationRow> rows = readDeclarations(padron, objeto);
    TreeModel& model = build.model;
    const int premises = model.indexOf(premisesKey);
    QString year, month, yearKey, monthKey;
    int yearNode = -1, monthNode = -1;
    bool monthHoldsCtrl = false;
    int rectifications = 0;
    // The caption of an original is its form's legend, one text for all.
    QHash<QString, QString> legends;
    for (const DeclarationRow& row : rows) {
        const QString& period = row.period;
        if (period.right(4) != year || yearKey.isEmpty()) {
            year = period.right(4);
            yearKey = premisesKey + QStringLiteral(";Anio=") + year;
            const int before = model.count();
            yearNode = addBelow(model, premises, yearKey,
                                QStringLiteral("Formularios Año: ") + year, kCarpeta);
            if (model.count() > before)
                model.ensureVisible(yearNode);
            monthKey.clear(); // a new year opens its own months
        }
        if (period.left(2) != month || monthKey.isEmpty()) {
            month = period.left(2);
            monthKey = yearKey + QStringLiteral(";Periodo=") + month;
            monthHoldsCtrl = holdsCtrl(monthKey);
            monthNode =
                addBelow(model, yearNode, monthKey, QStringLiteral("Periodo: ") + month, kCarpeta);
        }
        const QString& rect = row.rect;
        const QString& date = row.date;
        const QString& ctrl = row.ctrl;
        const QString& id = row.id;
        QString caption = row.caption;
        if (IsYesText(rect)) {
            ++rectifications;
            caption += QStringLiteral(" (Rectif. N° ") + QString::number(rectifications) + u' ' +
                       date + u')';
            caption.squeeze(); // held by the node as long as the tree is open
        } else {
            rectifications = 0;
            QString& legend = legends[id];
            if (legend == caption)
                caption = legend;
            else
                legend = caption;
        }
        QString key;
        key.reserve(monthKey.size() + kFormularioTag.size() + id.size() + kStoredTag.size() +
                    rect.size() + kFechaTag.size() + date.size() + kCtrlTag.size() + ctrl.size());
        key.append(monthKey)
            .append(kFormularioTag)
            .append(id)
            .append(kStoredTag)
            .append(rect)
            .append(kFechaTag)
            .append(date)
            .append(kCtrlTag)
            .append(ctrl);
        // A row from before ctrl existed takes the count of its rectification.
        if (ctrlReadsEmpty(
                key, monthHoldsCtrl || holdsCtrl(id) || holdsCtrl(rect) || holdsCtrl(date), ctrl))
            key += QString::number(rectifications);
        addBelow(model, monthNode, key, caption, QStringLiteral("Archivo"));
    }
}

void ZoForms::FillTreeViewPeriodo(const RecordsetPtr& forms, Field& tree, int monthNode)
{
    if (!forms || monthNode < 0 || monthNode >= tree.tree().count())
        return;
    TreeBuild build(tree);
    fillPeriodo(build, *forms, monthNode);
    tree.treeChanged();
}

void ZoForms::fillPeriodo(TreeBuild& build, const Recordset& forms, int monthNode)
{
    const QString monthKey = build.model.node(monthNode).key;
    const QString prefix = monthKey + QStringLiteral(";Formulario=");
    const QString padron = padronOfKey(monthKey);
    const QString objeto = after(monthKey, QStringLiteral("Objeto N° "), 13);
    for (const QVector<QVariant>& row : forms.rows()) {
        const QString id = VariantText(row.value(0));
        const QString caption = VariantText(row.value(1));
        if (m_index.anyKeyContains(build.model, prefix + id))
            continue;
        // One main return per month, whatever the regime says now.
        if ((id == kF2001 || id == kF976) &&
            (m_index.anyKeyContains(build.model, prefix + kF2001) ||
             m_index.anyKeyContains(build.model, prefix + kF976)))
            continue;
        const QString regimen = build.regimen(padron, objeto);
        if ((id == kF977 || id == kF978) && regimen != QLatin1String("2") &&
            !offersAnnex(build, id, regimen, monthKey, padron, objeto))
            continue;
        const bool add =
            regimen == QLatin1String("2") ||
            (regimen == QLatin1String("0") &&
             caption != QStringLiteral("Nuevo - T.I.S.S.H. Procom DDJJ Mensual: F2001")) ||
            (regimen == QLatin1String("1") &&
             caption != QStringLiteral("Nuevo - T.I.S.S.H. Régimen General DDJJ Mensual: F976"));
        if (add)
            build.model.add(monthKey, prefix + id + kNewFormTail, caption, QStringLiteral("Blank"));
    }
    build.model.node(monthNode).expanded = true;
}

// An annex is offered only when the month's main return declares an amount
// for it to back up.
bool ZoForms::offersAnnex(TreeBuild& build, const QString& formulario, const QString& regimen,
                          const QString& monthKey, const QString& padron, const QString& objeto)
{
    const QString table = regimen == QLatin1String("0") ? kF976 : kF2001;
    const QString column =
        formulario == kF977 ? QStringLiteral("retenciones") : QStringLiteral("percepciones");
    const QString period = after(monthKey, QStringLiteral(";Periodo="), 2) + u'-' +
                           after(monthKey, QStringLiteral(";Anio="), 4);
    const QString amount = build.latestAmount(table, column, padron, objeto, period);
    const auto value = LocaleNumber(QStringLiteral("0") + amount);
    return value && *value != 0;
}

bool ZoForms::VerifyNode(const QString& key, Field& tree, const QString& regimen)
{
    const TreeModel& model = tree.tree();
    if (key.startsWith(QStringLiteral("Anio=")) || key.startsWith(QStringLiteral("Periodo="))) {
        const TreeNode* selected = model.selectedNode();
        if (!selected)
            return false;
        if (selected->key.contains(key))
            return true;
        for (int child : selected->children)
            if (model.node(child).key.contains(key))
                return true;
        return false;
    }
    if (!regimen.isEmpty()) {
        const QString other = regimen == QLatin1String("1")   ? kF976
                              : regimen == QLatin1String("0") ? kF2001
                                                              : QString();
        if (other.isEmpty())
            return false;
        for (const TreeNode& node : model.nodes())
            if (node.key.contains(other))
                return true;
        return false;
    }
    return m_index.anyKeyContains(model, key);
}

QString ZoForms::SelectFormulariosNuevosSql(const QString& retencion, const QString& percepcion,
                                            const QString& regimen)
{
    const bool ret = retencion != QLatin1String("0");
    const bool per = percepcion != QLatin1String("0");
    QString clause;
    for (const Offer& offer : kOffers)
        if (regimen == QLatin1String(offer.regimen) && offer.retencion == ret &&
            offer.percepcion == per)
            clause = QStringLiteral(" WHERE idFormulario in (") + QString::fromLatin1(offer.forms) +
                     u')';
    return QStringLiteral("select idFormulario, LeyendaNuevo, Orden from Formularios") + clause +
           QStringLiteral(" ORDER BY Orden");
}

RecordsetPtr ZoForms::GetSelectFormulariosNuevos(const QString& retencion,
                                                 const QString& percepcion, const QString& regimen)
{
    return gAccess().FillRecordSet(SelectFormulariosNuevosSql(retencion, percepcion, regimen));
}

bool ZoForms::VerificaRegimen(const QString& regimen, const QString& formulario)
{
    if (formulario == kF2001 && regimen == QLatin1String("0"))
        return false;
    if (formulario == kF976 && regimen == QLatin1String("1"))
        return false;
    return true;
}

// --- Years and periods ----------------------------------------------------------

void ZoForms::FillTreeViewNuevoAnio(Field& tree, const QString& anio,
                                    const QString& idContribuyente, const QString& selectedKey)
{
    Q_UNUSED(idContribuyente);
    if (anio.trimmed().isEmpty() || !IsNumericText(anio))
        return;
    if (VerifyNode(QStringLiteral("Anio=") + anio, tree)) {
        MsgBox(QStringLiteral("Año ingresado."), Msg::Exclamation, kAtencion);
        return;
    }
    tree.tree().add(selectedKey, selectedKey + QStringLiteral(";Anio=") + anio,
                    QStringLiteral("Formularios Año: ") + anio, kCarpeta);
    tree.treeChanged();
}

void ZoForms::FillTreeViewNuevoPeriodo(Field& tree, const QString& periodo, int yearNode,
                                       const QString& idContribuyente, const QString& padron,
                                       const QString& objeto, const QString& retencion,
                                       const QString& percepcion, const QString& regimen)
{
    Q_UNUSED(idContribuyente);
    Q_UNUSED(padron);
    Q_UNUSED(objeto);
    TreeModel& model = tree.tree();
    if (yearNode < 0 || yearNode >= model.count() || periodo.trimmed().isEmpty() ||
        !IsNumericText(periodo) || periodo.toInt() < 1)
        return;
    const QString yearKey = model.node(yearNode).key;
    const QString month = TwoDigits(periodo);
    const QString monthKey = yearKey + QStringLiteral(";Periodo=") + month;
    // The month's key, looked for as any node's key text.
    if (VerifyNode(monthKey, tree)) {
        MsgBox(QStringLiteral("Periodo ya ingresado."), Msg::Exclamation, kAtencion);
        return;
    }
    const RecordsetPtr forms = GetSelectFormulariosNuevos(retencion, percepcion, regimen);
    if (!forms || forms->RecordCount() == 0)
        return;
    const int node = model.add(yearKey, monthKey, QStringLiteral("Periodo: ") + month, kCarpeta);
    if (node < 0)
        return;
    TreeBuild build(tree);
    fillPeriodo(build, *forms, node);
    model.ensureVisible(node);
    model.node(node).expanded = true;
    tree.treeChanged();
}

void ZoForms::InsertCopiaDDJJ(const QString& idContribuyente, const QString& periodoModelo,
                              const QString& anioModelo, const QString& anio,
                              const QString& periodo, const QString& padron, const QString& objeto)
{
    Q_UNUSED(idContribuyente);
    ZoAccess& db = gAccess();
    if (db.GetLong(QStringLiteral("SELECT MAX(id) as Maximo from TPADRONES_FORMULARIOS")) <= 0)
        return;
    const QString modelPeriod = TwoDigits(periodoModelo) + u'-' + anioModelo.trimmed();
    const RecordsetPtr forms = db.FillRecordSet(
        QStringLiteral("SELECT DISTINCT(IDFORMULARIO) FROM TPADRONES_FORMULARIOS WHERE Padron = ") +
        Quoted(padron) + QStringLiteral(" AND Objeto = ") + Quoted(objeto) +
        QStringLiteral(" AND PERIODO = ") + Quoted(modelPeriod) +
        QStringLiteral(" AND RECTIFICATIVA in ('Falso','False') AND FECHARECTIFICATIVA = '0' "
                       "AND ctrl = '0'"));
    const PeriodCopy copy(padron, objeto, modelPeriod, TwoDigits(periodo), anio.trimmed());
    // One transaction for speed; each declaration comes over whole, with its
    // lines and its registration, or not at all, and what was copied before
    // a failure is kept.
    bool ok = forms != nullptr;
    QString failure;
    {
        Transaction unit(db, Transaction::Mode::KeepWhatPassed);
        for (; ok && !forms->EOF_(); forms->MoveNext()) {
            const FormTables* form = FormTables::find(forms->Text(0));
            if (!form)
                continue;
            Transaction one(db, Transaction::Mode::AllOrNothing);
            const bool copied = copy.Copy(*form);
            ok = one.commit() && copied;
            failure = one.failure();
        }
        if (ok && !unit.commit()) {
            ok = false;
            failure = unit.failure();
        }
    }
    if (!ok)
        MsgBox(QStringLiteral("Error al intentar generar la copia.") +
                   (failure.isEmpty() ? QString() : QStringLiteral("\r\n") + failure),
               Msg::Exclamation);
}

// --- Dispatch -------------------------------------------------------------------

void ZoForms::Refill(Field& tree, const QString& idContribuyente)
{
    refill(tree, idContribuyente, TreePlace(tree.tree()));
}

// The two fills, handed to the view once, in the place the person was.
void ZoForms::refill(Field& tree, const QString& idContribuyente, const TreePlace& place)
{
    addOptions(tree.tree(), idContribuyente);
    fillLocales(tree, idContribuyente);
    place.restore(tree.tree());
    tree.treeChanged();
}

void ZoForms::ShowForm(Field& tree, const QString& idContribuyente, int& result)
{
    result = 0;
    const TreeNode* node = tree.tree().selectedNode();
    if (!node)
        return;
    const TreePlace place(tree.tree());
    const ZoParameterString& ps = gParameters();
    QString key = node->key;
    if (ps.ReadValue(key, QStringLiteral("ctrl")).isEmpty())
        key += QStringLiteral(";ctrl=0");
    QString id = idContribuyente;
    if (key.startsWith(u'P')) {
        key.replace(QStringLiteral("Padrón N° "), QStringLiteral("Padron="));
        const QString padron = ps.ReadValue(key, QStringLiteral("Padron"));
        const QString cuit = gAccess().GetString(
            QStringLiteral("SELECT Cuit FROM tPadronesComerciales WHERE Padron = ") +
            Quoted(PadronOfValue(padron)) + QStringLiteral(" and objeto = ") +
            Quoted(ObjetoOfValue(padron)) + u' ');
        // The premises keep the bare CUIT, the taxpayers the masked one.
        const QString owner = gAccess().GetString(
            QStringLiteral("Select idContribuyente from Contribuyentes where Cuit = ") +
            Quoted(FormatCuit(DigitsOnly(cuit))));
        key += QStringLiteral(";idContribuyente=") + owner + u';';
    } else if (key.startsWith(u'M')) {
        id = ps.ReadValue(key, QStringLiteral("idContribuyente"));
        if (id.isEmpty())
            return;
    }

    if (key.contains(QStringLiteral("odificar"))) {
        Contribuyentes dialog;
        dialog.Id = id;
        dialog.NewRecord = false;
        dialog.show(true);
        refill(tree, idContribuyente, place);
        return;
    }
    if (key.contains(QStringLiteral("liminar"))) {
        if (deleteTaxpayer(idContribuyente))
            result = 2;
        return;
    }
    if (IsNoText(ps.ReadValue(key, QStringLiteral("Nuevo")))) {
        SeleccionFormulario selection;
        selection.Parametros = key;
        selection.show(true);
        const int option = selection.OpcionesSeleccion;
        if ((option == 1 || option == 2) && CountVersions(selection.Parametros) >= 3) {
            MsgBox(QStringLiteral("Ya existen 3 formularios rectificativos ") +
                       ps.ReadValue(key, QStringLiteral("Formulario")) +
                       QStringLiteral(".\r\nNo se puede continuar."),
                   Msg::Information, QStringLiteral("Advertencia..."));
            selection.unload();
            return;
        }
        selection.unload();
        if (option == -1)
            return;
        if (option == 3) {
            refill(tree, idContribuyente, place);
            return;
        }
        key = selection.Parametros;
    }
    const QString formulario = ps.ReadValue(key, QStringLiteral("Formulario"));
    if (formulario.isEmpty() || !FormTables::find(formulario))
        return;
    CargaForm(key, formulario);
    refill(tree, idContribuyente, place);
}

int ZoForms::CountVersions(const QString& parameters)
{
    const ZoParameterString& ps = gParameters();
    const QString padron = ps.ReadValue(parameters, QStringLiteral("Padron"));
    const QString periodo = ps.ReadValue(parameters, QStringLiteral("Periodo"));
    const QString period =
        periodo.size() > 2
            ? periodo
            : TwoDigits(periodo) + u'-' + ps.ReadValue(parameters, QStringLiteral("Anio"));
    const bool rect = IsYesText(ps.ReadValue(parameters, QStringLiteral("Rectificativa")));
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM TPadrones_Formularios WHERE Padron = ") +
        Quoted(PadronOfValue(padron)) + QStringLiteral(" AND Objeto = ") +
        Quoted(padron.right(13)) + QStringLiteral(" AND Periodo = ") + Quoted(period) +
        QStringLiteral(" AND idFormulario = ") +
        Quoted(ps.ReadValue(parameters, QStringLiteral("Formulario"))) +
        (rect ? QStringLiteral(" AND Rectificativa in ('True','Verdadero')")
              : QStringLiteral(" AND Rectificativa in ('False','Falso')")));
    return rs ? rs->RecordCount() : 0;
}

bool ZoForms::deleteTaxpayer(const QString& idContribuyente)
{
    if (ContribuyenteHasForms(idContribuyente)) {
        MsgBox(QStringLiteral("No puede eliminar un Contribuyente que posea formularios cargados"),
               Msg::Information);
        return false;
    }
    const QString id = QString::number(idContribuyente.trimmed().toLongLong());
    ZoAccess& db = gAccess();
    // The question names the taxpayer it deletes.
    const QString nombrado =
        db.GetString(QStringLiteral("SELECT Cuit & ' ' & ApellidoNombre FROM Contribuyentes WHERE "
                                    "idContribuyente = ") +
                     id);
    if (MsgBox(QStringLiteral("Desea eliminar el contribuyente?\n") + nombrado,
               Msg::YesNo + Msg::Question) != Msg::Yes)
        return false;
    QString cuit = db.GetString(
        QStringLiteral("SELECT Cuit FROM Contribuyentes WHERE idContribuyente = ") + id);
    cuit.remove(u'-');
    const RecordsetPtr premises = db.FillRecordSet(
        QStringLiteral("SELECT * FROM tPadronesComerciales WHERE Cuit = ") + Quoted(cuit));
    // Each premises by padrón and objeto: another taxpayer's objeto of the
    // same padrón is not this taxpayer's to delete.
    QVector<QPair<QString, QString>> keys;
    for (; premises && !premises->EOF_(); premises->MoveNext())
        keys.append(
            {premises->Text(QStringLiteral("padron")), premises->Text(QStringLiteral("objeto"))});
    // The taxpayer goes with all its premises, or nothing goes.
    return SaveWhole([&] {
        for (const auto& k : keys)
            PadronCascade::Run(k.first, k.second);
        db.Execute(QStringLiteral("DELETE FROM CONTRIBUYENTES WHERE IDCONTRIBUYENTE = ") + id);
        return true;
    });
}

void ZoForms::DeletePadron(const QString& padron, const QString& objeto)
{
    SaveWhole([&] {
        PadronCascade::Run(padron, objeto);
        return true;
    });
}

void ZoForms::CargaForm(QString parameters, const QString& formulario)
{
    const DeclarationHeader header = DeclarationReader::Read(parameters);
    m_headers.insert(formulario.toUpper(), header);
    DeclarationForm* form = Formulario(formulario);
    if (!form) {
        LogError(QStringLiteral("0"),
                 QStringLiteral("No hay formulario para ") + formulario + QStringLiteral(": ") +
                     parameters,
                 QStringLiteral("ZoForms.CargaForm"));
        return;
    }
    form->Parametros = parameters;
    form->ContribuyenteId = header.IdContribuyente;
    form->Encabezado = header;
    form->show(true);
}

DeclarationHeader ZoForms::Encabezado(const QString& formulario) const
{
    return m_headers.value(formulario.toUpper());
}

DeclarationForm* ZoForms::Formulario(const QString& formulario)
{
    const QString id = formulario.toUpper();
    auto it = m_forms.find(id);
    if (it == m_forms.end()) {
        std::shared_ptr<DeclarationForm> created = CreateDeclarationForm(id);
        if (!created)
            return nullptr;
        it = m_forms.insert(id, std::move(created));
    }
    return it->get();
}
