#pragma once

class QWidget;

// The one look of the program: the same style, font and colours in every
// window, whatever the desktop it runs on. Set once, when the Qt port is
// installed; a second call does nothing.
void ApplyLook();

// What every view shares beyond its Designer form: compact grids without row
// numbers, boxes the person cannot type into drawn on a shaded ground, open
// lists of figures right-aligned, and the buttons of the bottom row (the
// layout "layoutBotones") all of one width.
void TidyView(QWidget* view);
