#pragma once

namespace tabwright::scripting {

/// Whether a driver looks at its browser before anybody asks (Lookahead.h).
enum class LooksAhead { no, yes };

} // namespace tabwright::scripting
