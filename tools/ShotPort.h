#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <functional>

#include "frame/view/QtUi.h"

class QPixmap;
class QWidget;

// The UI port of the picture tool: the program's real views, but a window that
// is shown modally is drawn at once: the scene planned for it fills it in as a
// person would, the picture is saved, the scene may go on (open a dialog from
// it), and the window is closed. Message boxes are printed and answered with
// the harmless button (No, Cancelar), choosers choose nothing.
class ShotPort : public QtUi
{
public:
    using Scene = std::function<void(Controller&)>;

    explicit ShotPort(const QString& folder);

    // The next modal showing of `window`: `before` runs on the loaded window,
    // the picture is saved as {picture}.png (none when `picture` is empty),
    // then `after` runs; a window still shown is then closed.
    void plan(const QString& window, const QString& picture, Scene before = {}, Scene after = {});

    // Draws a window now, outside any flow: loads it, runs `before`, saves the
    // picture and closes the window. False when it has no view.
    bool shoot(Controller& window, const QString& picture, const Scene& before = {});

    // The view a window shown without waiting stands in, while it is open.
    QWidget* view(const QString& window) const { return m_modeless.value(window); }

    // Each picture shows the whole screen, the window placed on it as the
    // program places it (run on a real display, with a window manager).
    void setWholeScreen(bool on) { m_wholeScreen = on; }

    // Saves a drawn widget as {picture}.png in the folder.
    void save(const QPixmap& pixmap, const QString& picture);

    // Planned pictures that no window came to take.
    QStringList untaken() const;
    const QStringList& taken() const { return m_taken; }

    int messageBox(const QString& text, int style, const QString& title) override;
    void showModal(Controller& window) override;
    void showModeless(Controller& window) override;
    void yield() override;
    QString chooseFolder(const QString& title) override;
    QString chooseOpenFile(const QString& title, const QString& filter,
                           const QString& folder) override;
    QString chooseSaveFile(const QString& title, const QString& filter,
                           const QString& suggested) override;
    bool openDocument(const QString& path) override;
    void setBusy(bool busy) override;
    void endProgram() override;

private:
    QPixmap picture(QWidget* view) const;
    bool m_wholeScreen = false;

    struct Plan {
        QString picture;
        Scene before;
        Scene after;
    };

    QWidget* present(Controller& window);

    QString m_folder;
    QHash<QString, QList<Plan>> m_plans;
    QHash<QString, QPointer<QWidget>> m_modeless;
    QStringList m_taken;
};
