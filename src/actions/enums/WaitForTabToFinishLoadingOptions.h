#pragma once

#include "intents/EnumDeclaration.h"

namespace tabwright::actions {

/// The states of a page that `WaitForTabToFinishLoading` waits for. The raw values are those of `document.readyState`.
enum class WaitForTabToFinishLoading_DocumentReadyState {
  interactive, ///< the document has been read; images, style sheets and frames may still load
  complete,    ///< everything has been loaded
};

inline constexpr auto waitForTabToFinishLoadingDocumentReadyStates =
    intents::enumTable<WaitForTabToFinishLoading_DocumentReadyState>({
        {WaitForTabToFinishLoading_DocumentReadyState::interactive, "interactive"},
        {WaitForTabToFinishLoading_DocumentReadyState::complete, "complete"},
    });

constexpr intents::EnumDeclaration enumDeclaration(WaitForTabToFinishLoading_DocumentReadyState) {
  return {"WaitForTabToFinishLoading_DocumentReadyState", intents::tables::standard,
          waitForTabToFinishLoadingDocumentReadyStates};
}

} // namespace tabwright::actions
