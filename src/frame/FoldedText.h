#pragma once

#include <QtGlobal>

// Text compared as Jet compared it: without regard to case for every letter,
// accented ones and Ñ included ('ÑANDÚ' matches 'ñandú'), on the UTF-8 text
// the database keeps. Both routines read the bytes in place: nothing is
// allocated for a comparison of plain ASCII text.

// Negative, zero or positive as `a` sorts before, with or after `b`. Two
// texts are equal only when they differ at most in case. Letters sort as in
// Spanish: an accented vowel beside its plain one, Ñ after N. Text of plain
// ASCII sorts exactly as the engine's own NOCASE sorts it.
int CompareFolded(const char* a, int aSize, const char* b, int bSize);

// Whether `text` is LIKE `pattern`, without regard to case: "%" stands for
// any run of characters, "_" for exactly one, and `escape` (0 for none) makes
// the character after it plain.
bool LikeFolded(const char* pattern, int patternSize, const char* text, int textSize,
                char32_t escape = 0);

// The character that begins a UTF-8 text, and its size in bytes (0 when the
// text is empty).
char32_t FirstCharacter(const char* text, int size, int* length);
