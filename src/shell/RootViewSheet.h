#pragma once

namespace tabwright::shell {

/// The sheets that the main window can show over itself.
enum class RootViewSheet { none, whatsNew };

} // namespace tabwright::shell
