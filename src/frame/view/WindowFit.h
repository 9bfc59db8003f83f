#pragma once

#include <QRect>
#include <QString>

class QWidget;

// Every window fits the screen it opens on, its bottom buttons in sight, and
// opens where the person left it the time before.

// The room a window may take: the available area of its screen less the frame
// the window manager draws around it.
QSize RoomOnScreen(QWidget* view);

// Sizes a view to what it asks for, within `room`. A view whose fields need
// more than the room gets them in a scroll area, the row of buttons at its
// bottom (the layout "layoutBotones") staying outside it, always in sight.
void FitInto(QWidget* view, const QSize& room);

// Puts the view at the size and place it had when it was last closed, when
// these still fit on a screen; false when there is none to restore. From then
// on its size and place are remembered when it closes, per window name.
bool RestorePlace(QWidget* view, const QString& windowName);

// What a window gets before it is shown: fitted into the room of its screen,
// then put where it was last closed, else centred on the window it was opened
// from (on the screen for the first window), never beyond the screen's edges.
void PlaceWindow(QWidget* view, const QString& windowName);
