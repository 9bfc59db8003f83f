#pragma once

// Makes Qt's own dialogs (open, save, choose a folder, print, preview) and
// buttons speak Spanish: loads Qt's Spanish translations and sets the default
// locale to Spanish (Argentina). The program's own texts are already Spanish.
// Returns false when the translations are not installed (package
// qt6-translations-l10n): the dialogs then stay in English, nothing else
// changes.
bool InstallSpanishTranslations();
