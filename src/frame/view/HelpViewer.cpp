#include "HelpViewer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QSplitter>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "Globals.h"
#include "WindowFit.h"

namespace {

// The text of an HTML page without its tags and with its accents folded, for
// a search that ignores case and accents.
QString plainFolded(const QString& text)
{
    QString plain = text;
    plain.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
    QString folded;
    folded.reserve(plain.size());
    for (const QChar c : plain.normalized(QString::NormalizationForm_D))
        if (c.category() != QChar::Mark_NonSpacing)
            folded += c.toLower();
    return folded;
}

QString pageTitle(const QString& html, const QString& fallback)
{
    const auto match = QRegularExpression(QStringLiteral("<h1>(.*?)</h1>"),
                                          QRegularExpression::DotMatchesEverythingOption)
                           .match(html);
    return match.hasMatch()
               ? match.captured(1).remove(QRegularExpression(QStringLiteral("<[^>]*>")))
               : fallback;
}

} // namespace

HelpViewer& HelpViewer::instance()
{
    static HelpViewer* viewer = new HelpViewer;
    return *viewer;
}

HelpViewer::HelpViewer()
{
    setObjectName(QStringLiteral("HelpViewer"));
    setWindowTitle(QStringLiteral("Manual de Uso"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setModal(false);

    auto* back = new QPushButton(QStringLiteral("< Atrás"));
    back->setObjectName(QStringLiteral("cmdAtras"));
    auto* forward = new QPushButton(QStringLiteral("Adelante >"));
    forward->setObjectName(QStringLiteral("cmdAdelante"));
    auto* home = new QPushButton(QStringLiteral("Índice"));
    home->setObjectName(QStringLiteral("cmdIndice"));
    m_search = new QLineEdit;
    m_search->setObjectName(QStringLiteral("txtBuscar"));
    m_search->setPlaceholderText(QStringLiteral("Buscar en el manual"));
    m_search->setClearButtonEnabled(true);
    auto* find = new QPushButton(QStringLiteral("Buscar"));
    find->setObjectName(QStringLiteral("cmdBuscar"));
    for (QPushButton* b : {back, forward, home, find})
        b->setAutoDefault(false);

    auto* bar = new QHBoxLayout;
    bar->addWidget(back);
    bar->addWidget(forward);
    bar->addWidget(home);
    bar->addSpacing(12);
    bar->addWidget(m_search, 1);
    bar->addWidget(find);

    m_browser = new QTextBrowser;
    m_browser->setObjectName(QStringLiteral("txtPagina"));
    m_browser->setOpenLinks(true);
    m_browser->setOpenExternalLinks(false);
    m_results = new QListWidget;
    m_results->setObjectName(QStringLiteral("lstResultados"));
    m_results->hide();

    auto* split = new QSplitter;
    split->addWidget(m_results);
    split->addWidget(m_browser);
    split->setStretchFactor(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(split, 1);
    resize(820, 600);
    RestorePlace(this, QStringLiteral("Ayuda"));

    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_browser, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
    connect(back, &QPushButton::clicked, m_browser, &QTextBrowser::backward);
    connect(forward, &QPushButton::clicked, m_browser, &QTextBrowser::forward);
    connect(home, &QPushButton::clicked, this,
            [this] { showPage(helpFolder() + QStringLiteral("/index.html")); });
    connect(find, &QPushButton::clicked, this, &HelpViewer::search);
    connect(m_search, &QLineEdit::returnPressed, this, &HelpViewer::search);
    connect(m_results, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        showPage(item->data(Qt::UserRole).toString());
        m_browser->find(m_search->text().trimmed());
    });
    connect(m_results, &QListWidget::itemClicked, m_results, &QListWidget::itemActivated);
}

QString HelpViewer::helpFolder() const
{
    return AssetsPath() + QStringLiteral("/help");
}

void HelpViewer::showPage(const QString& pathWithAnchor)
{
    const qsizetype hash = pathWithAnchor.indexOf(u'#');
    QUrl url = QUrl::fromLocalFile(hash < 0 ? pathWithAnchor : pathWithAnchor.left(hash));
    if (hash >= 0)
        url.setFragment(pathWithAnchor.mid(hash + 1));
    m_browser->setSource(url);
    show();
    raise();
    activateWindow();
}

void HelpViewer::search()
{
    const QStringList words = plainFolded(m_search->text()).split(u' ', Qt::SkipEmptyParts);
    m_results->clear();
    if (words.isEmpty()) {
        m_results->hide();
        return;
    }
    const QDir folder(helpFolder());
    for (const QString& name :
         folder.entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString html = QString::fromUtf8(file.readAll());
        const QString text = plainFolded(html);
        if (std::all_of(words.begin(), words.end(),
                        [&](const QString& w) { return text.contains(w); })) {
            auto* item = new QListWidgetItem(pageTitle(html, name), m_results);
            item->setData(Qt::UserRole, folder.filePath(name));
        }
    }
    if (m_results->count() == 0)
        new QListWidgetItem(QStringLiteral("Ninguna página contiene lo buscado."), m_results);
    m_results->show();
}
