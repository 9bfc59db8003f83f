#pragma once

#include <functional>

// The main window belongs to the application shell, above every subsystem.
// What a subsystem below asks of it (a restore refreshing the list of
// taxpayers, or closing the window before the program ends) goes through this
// link, which the main window sets when it is created. With no main window
// both requests do nothing.
struct MainWindowLink {
    std::function<void()> refreshTaxpayers;
    std::function<void()> close;
};

void SetMainWindowLink(MainWindowLink link);

// Rebuilds the main window's list of taxpayers when the window is open.
void RefreshMainWindowTaxpayers();
// Closes the main window when it is open.
void CloseMainWindow();
