#pragma once
// The look shared by every screen, set once on the application: the program
// at start, and the tests that build screens without the program.

// A field that cannot be changed looks so: a grey ground and grey text in
// place of the white of a live field, whatever the style's own palette.
void applyAppearance();
