#include "MainWindowLink.h"

namespace {
MainWindowLink& link()
{
    static MainWindowLink current;
    return current;
}
} // namespace

void SetMainWindowLink(MainWindowLink newLink)
{
    link() = std::move(newLink);
}

void RefreshMainWindowTaxpayers()
{
    if (link().refreshTaxpayers)
        link().refreshTaxpayers();
}

void CloseMainWindow()
{
    if (link().close)
        link().close();
}
