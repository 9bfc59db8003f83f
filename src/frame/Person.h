#pragma once

#include <QString>

class Controller;
class Field;

// Drives a window as a person at the keyboard would: focus moves with its
// validation, each typed character passes the window's key handler, the mask
// and the length limit, and every change raises the window's events.
class Person
{
public:
    explicit Person(Controller& window) : m_window(window) {}

    // Moves the focus into the field; false when the field left behind held it.
    bool focus(const QString& name);
    // Types characters at the cursor (the end of the text on first entry).
    void type(const QString& name, const QString& text);
    // Selects the whole text and types over it.
    void retype(const QString& name, const QString& text);
    // A key without a character (Enter, F3, arrows, Escape) or with one.
    void key(const QString& name, int keyCode, int shift = 0);
    // Moves the focus on to the next field in tab order.
    bool leave(const QString& name);
    void click(const QString& name, int index = -1);
    void dblClick(const QString& name, int index = -1);
    void check(const QString& name, bool on);
    // Picks an entry of a combo or list, by index or by its text.
    void choose(const QString& name, int index);
    void choose(const QString& name, const QString& text);
    // Clicks a row of a grid.
    void clickRow(const QString& name, int row, int col = 0);
    // Clicks a node of a tree.
    void clickNode(const QString& name, const QString& key);
    void dblClickNode(const QString& name, const QString& key);
    // Closes the window from its close box.
    bool closeWindow();

private:
    void typeChar(Field& f, QChar c);
    void backspace(Field& f);

    Controller& m_window;
};
