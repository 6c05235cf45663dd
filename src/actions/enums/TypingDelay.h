#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The delay between keystrokes; raw values are seconds.
enum class TypingDelay { none, s0_01, s0_02, s0_05, s0_10, s0_15, s0_20, s0_30, s0_40 };

inline constexpr auto typingDelays = intents::enumTable<TypingDelay>({
    {TypingDelay::none, "none", "0.00"},
    {TypingDelay::s0_01, "s0_01", "0.01"},
    {TypingDelay::s0_02, "s0_02", "0.02"},
    {TypingDelay::s0_05, "s0_05", "0.05"},
    {TypingDelay::s0_10, "s0_10", "0.10"},
    {TypingDelay::s0_15, "s0_15", "0.15"},
    {TypingDelay::s0_20, "s0_20", "0.20"},
    {TypingDelay::s0_30, "s0_30", "0.30"},
    {TypingDelay::s0_40, "s0_40", "0.40"},
});

constexpr intents::EnumDeclaration enumDeclaration(TypingDelay) {
  return {"TypingDelay", intents::tables::enums, typingDelays};
}

} // namespace tabwright::actions
