#pragma once

/// Icons come from the desktop's theme; where there is none, or it lacks one, from Breeze.
void UseIconTheme();

/// Icons of what is disabled can be told from the others, in dark themes too.
void UseDimmedIcons();
