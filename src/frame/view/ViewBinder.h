#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include "Controller.h"

class QLineEdit;

class QAction;
class QMenu;
class QTableWidget;

// Keeps each widget of a view in step with the controller's field of the same
// name, both ways, and forwards the widget's events to the controller.
class ViewBinder : public QObject
{
    Q_OBJECT
public:
    ViewBinder(QWidget* view, Controller& controller);

    // Rebinds after the controller rebuilt its fields (a new load).
    void bindAll();

    // The key code of the old keyboard events for a Qt key.
    static int keyCodeOf(int qtKey, const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void bind(Field* field);
    void trackSelection(Field* field, QLineEdit* edit);
    static void pushSelection(Field* field, QLineEdit* edit);
    void connectWidget(Field* field, QWidget* widget);
    void connectAction(Field* field, QAction* action);
    void push(Field* field, Field::Aspect aspect);
    void pushAll(Field* field);
    void pushMenuItems(Field* field);
    void buildMenuItems(Field* field);
    QMenu* menuOf(Field* field) const;
    void pushGrid(Field* field, QWidget* widget);
    static void pushGridSelection(Field* field, QTableWidget* table);
    void fitColumns(Field* field, QTableWidget* table);
    void pushTree(Field* field, QWidget* widget);
    void pushItems(Field* field, QWidget* widget);
    void focusField(const QString& name);
    // Puts the focus back on the field the person was in, after its leaving
    // was refused: its text keeps its selection and caret.
    void returnFocus(const QString& name);
    void focusWidget(const QString& name, Qt::FocusReason reason);
    bool handleKey(Field* field, QKeyEvent* event);
    bool pressDefault(Field* field, const QString& before);
    void clickFromWidget(Field* field, int index = -1);

    QWidget* m_view;
    Controller& m_controller;
    QHash<Field*, QPointer<QWidget>> m_widgets;
    QHash<QWidget*, Field*> m_fieldOf;
    QHash<Field*, QAction*> m_actions;
    QHash<Field*, QList<QAction*>> m_menuItems;
    QSet<Field*> m_pendingMenus; // menus that build their items when opened
    QSet<Field*> m_staleMenus;   // ... and whose items changed since
    int m_updating = 0;          // pushing field state into widgets
    bool m_focusing = false;
    Field* m_refused = nullptr; // its focus was refused by the field left behind
    bool m_refusedNow = false;  // a field's leaving was refused since the last key
    bool m_controllerGone = false;
};
