#pragma once

/// Icons come from the desktop's theme; where there is none, or it lacks one, from Breeze.
void UseIconTheme();
