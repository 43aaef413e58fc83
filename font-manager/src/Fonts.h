#pragma once

#include "Text.h"

namespace tamberlink {

/// Inactive fonts by the vault's policy.
struct MissingFonts {
  Strings automatic;
  Strings choice;
  Strings restricted;
};

/// Returns those of the used fonts that are in the vault and inactive, each once and in the order
/// of use. Throws `std::out_of_range` at an unknown policy.
MissingFonts findMissingFonts(const Strings& used);

/// Tests whether the system has all of the fonts active.
bool areActive(const Strings& fonts);

/// Activates the fonts in the system.
void activateFonts(const Strings& fonts);

}  // namespace tamberlink
