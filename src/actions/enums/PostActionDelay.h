#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The delay after a menu or keyboard action; raw values are seconds.
enum class PostActionDelay { none, s0_2, s0_5, s1_0, s1_5, s2_0, s3_0, s4_0 };

inline constexpr auto postActionDelays = intents::enumTable<PostActionDelay>({
    {PostActionDelay::none, "none", "0.0"},
    {PostActionDelay::s0_2, "s0_2", "0.2"},
    {PostActionDelay::s0_5, "s0_5", "0.5"},
    {PostActionDelay::s1_0, "s1_0", "1.0"},
    {PostActionDelay::s1_5, "s1_5", "1.5"},
    {PostActionDelay::s2_0, "s2_0", "2.0"},
    {PostActionDelay::s3_0, "s3_0", "3.0"},
    {PostActionDelay::s4_0, "s4_0", "4.0"},
});

constexpr intents::EnumDeclaration enumDeclaration(PostActionDelay) {
  return {"PostActionDelay", intents::tables::enums, postActionDelays};
}

} // namespace tabwright::actions
