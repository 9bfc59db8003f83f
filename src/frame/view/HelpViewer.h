#pragma once

#include <QDialog>
#include <QUrl>

class QLineEdit;
class QListWidget;
class QTextBrowser;

// The manual inside the program: its pages with their links, back, forward
// and the index, and a search over every page. One window for the whole run,
// brought to the front at the page asked for.
class HelpViewer : public QDialog
{
public:
    static HelpViewer& instance();
    // Shows the page (a path under the help folder, with an optional
    // "#anchor").
    void showPage(const QString& pathWithAnchor);
    QTextBrowser* browser() const { return m_browser; }

private:
    HelpViewer();
    void search();
    QString helpFolder() const;

    QTextBrowser* m_browser;
    QLineEdit* m_search;
    QListWidget* m_results;
};
