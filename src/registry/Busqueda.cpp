#include "Busqueda.h"

#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace {
const QString kBuscar = QStringLiteral("txtBuscar");
const QString kLista = QStringLiteral("lstRegistros");
const QString kEstado = QStringLiteral("StatusBar");

// The activity columns of a premises, principal first, as code and text.
const char* const kPremisesActivities[][2] = {
    {"ACTP", "ACTP_DESC"}, {"ACT1", "ACT1_DESC"}, {"ACT2", "ACT2_DESC"},
    {"ACT3", "ACT3_DESC"}, {"ACT4", "ACT4_DESC"}, {"ACT5", "ACT5_DESC"},
};
} // namespace

Busqueda::Busqueda() : Controller(QStringLiteral("Busqueda")) {}

QString Busqueda::ActivitiesSql(const QString& typed)
{
    if (typed.isEmpty())
        return QStringLiteral("SELECT IDTACTIVIDAD, NOMBRE FROM TACTIVIDADES ORDER BY NOMBRE");
    return QStringLiteral("SELECT IDTACTIVIDAD, NOMBRE FROM TACTIVIDADES WHERE NOMBRE LIKE '%") +
           Sq(typed) + QStringLiteral("%' ORDER BY NOMBRE");
}

void Busqueda::design()
{
    setCaption(QStringLiteral("Búsqueda"));
    add(kBuscar, FieldKind::Text);
    add(kLista, FieldKind::List);
    add(kEstado, FieldKind::Status);

    on(kBuscar, Ev::Change, [this](EventArgs&) { narrow(); });
    on(kBuscar, Ev::KeyDown, [this](EventArgs& e) {
        // the arrows carry the focus down to the list
        if (e.key == KeyCode::Up || e.key == KeyCode::Down) {
            e.key = 0;
            sendTab();
        }
    });
    on(kLista, Ev::Click, [this](EventArgs&) { showCode(); });
    on(kLista, Ev::KeyDown, [this](EventArgs& e) { listKeyDown(e); });
    on(kLista, Ev::DblClick, [this](EventArgs&) { unload(); });
}

bool Busqueda::isPremisesMode() const
{
    return NombreFormulario == QLatin1String("F976") ||
           NombreFormulario == QLatin1String("F2001") || NombreFormulario == QLatin1String("F978");
}

void Busqueda::onLoad()
{
    m_lastKey = 0;
    if (isPremisesMode())
        fillPremisesActivities();
    else
        gAccess().FillListBox(SelectCommandText, field(kLista));
    field(kEstado).setText(QStringLiteral("Total reg.: ") +
                           QString::number(field(kLista).listCount()));
}

void Busqueda::fillPremisesActivities()
{
    Field& list = field(kLista);
    list.clearItems();
    const RecordsetPtr rs = gAccess().FillRecordSetReader(SelectCommandText);
    if (!rs || rs->EOF_())
        return;
    QStringList shown;
    for (const auto& activity : kPremisesActivities) {
        const QString text = rs->Text(QString::fromLatin1(activity[1]));
        if (text.isEmpty() || shown.contains(text))
            continue;
        shown << text;
        list.addItem(text, rs->Text(QString::fromLatin1(activity[0])).trimmed().toLongLong());
    }
    rs->Close();
}

void Busqueda::narrow()
{
    // Whatever the list held at opening, typing searches all activities.
    SelectCommandText = ActivitiesSql(field(kBuscar).text());
    gAccess().FillListBox(SelectCommandText, field(kLista));
}

void Busqueda::showCode()
{
    const Field& list = field(kLista);
    if (list.listIndex() < 0)
        return;
    field(kEstado).setText(QStringLiteral("Código: ") +
                           QString::number(list.itemData(list.listIndex())));
}

void Busqueda::listKeyDown(EventArgs& e)
{
    m_lastKey = e.key;
    if (e.key == KeyCode::Return || e.key == KeyCode::Escape) {
        e.key = 0;
        unload();
    }
}

void Busqueda::onUnload()
{
    // Escape leaves the answer as it was; any other way out copies the
    // selected entry, which is none when nothing is selected.
    if (m_lastKey == KeyCode::Escape)
        return;
    const Field& list = field(kLista);
    const int index = list.listIndex();
    Description = list.itemText(index);
    if (index >= 0)
        Id = QString::number(list.itemData(index));
}
