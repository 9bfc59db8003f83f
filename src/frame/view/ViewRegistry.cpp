#include "ViewRegistry.h"

#include <QHash>

namespace {
QHash<QString, ViewFactory>& factories()
{
    static QHash<QString, ViewFactory> all;
    return all;
}
} // namespace

void RegisterView(const QString& windowName, ViewFactory factory)
{
    factories().insert(windowName, std::move(factory));
}

QWidget* CreateView(const QString& windowName)
{
    const auto it = factories().constFind(windowName);
    return it == factories().constEnd() ? nullptr : (*it)();
}

QStringList RegisteredViews()
{
    QStringList names = factories().keys();
    names.sort();
    return names;
}
