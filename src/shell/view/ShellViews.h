#pragma once

// Registers the views of every subsystem, the shell's own windows included;
// called once by the program and by the GUI tests.
void RegisterAllViews();
