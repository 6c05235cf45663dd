#pragma once

namespace tabwright::shell {

/// The tabs of the main window, in their order.
enum class RootViewTab { home, settings, docsLinks, about };

} // namespace tabwright::shell
