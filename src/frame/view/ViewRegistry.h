#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>

// Which view draws which window: each subsystem registers a factory for the
// windows of its folder, by the window's name.
using ViewFactory = std::function<QWidget*()>;

void RegisterView(const QString& windowName, ViewFactory factory);
QWidget* CreateView(const QString& windowName);
// The names of the windows that have a view, sorted.
QStringList RegisteredViews();

// A view drawn from a Designer form: the widget and the generated setup.
template <class UiForm, class Base>
class FormView : public Base
{
public:
    FormView() { m_form.setupUi(this); }

private:
    UiForm m_form;
};

template <class UiForm, class Base>
void RegisterFormView(const QString& windowName)
{
    RegisterView(windowName, [] { return new FormView<UiForm, Base>(); });
}
