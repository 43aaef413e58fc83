#pragma once

#include "Text.h"

namespace tamberlink {

/// Fonts that aren't active, by what the vault's policy allows to do about them.
struct MissingFonts {
  Strings automatic;
  Strings choice;
  Strings restricted;
};

/// Those of the used fonts that are in the vault and not active yet, each once and in the order of
/// use. Throws `std::out_of_range` at a policy that the vault can't have.
MissingFonts findMissingFonts(const Strings& used);

/// Whether all of the fonts are active in the system.
bool areActive(const Strings& fonts);

/// Makes the fonts active in the system.
void activateFonts(const Strings& fonts);

}  // namespace tamberlink
