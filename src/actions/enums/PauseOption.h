#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The pause after an action's success; raw values are seconds.
enum class PauseOption { p00, p05, p10, p15, p20, p25, p30, p35, p40 };

inline constexpr auto pauseOptions = intents::enumTable<PauseOption>({
    {PauseOption::p00, "p00", "0.0"},
    {PauseOption::p05, "p05", "0.5"},
    {PauseOption::p10, "p10", "1.0"},
    {PauseOption::p15, "p15", "1.5"},
    {PauseOption::p20, "p20", "2.0"},
    {PauseOption::p25, "p25", "2.5"},
    {PauseOption::p30, "p30", "3.0"},
    {PauseOption::p35, "p35", "3.5"},
    {PauseOption::p40, "p40", "4.0"},
});

constexpr intents::EnumDeclaration enumDeclaration(PauseOption) {
  return {"PauseOption", intents::tables::enums, pauseOptions};
}

} // namespace tabwright::actions
