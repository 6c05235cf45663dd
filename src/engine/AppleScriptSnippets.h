#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tabwright::engine {

/// Names of the two page-side variables on `window` that one job uses.
struct JobVariables {
  std::string result; ///< unset until the job is done, then the list of its values
  std::string canary; ///< "alive" as long as the page that the job was planted in is there

  /// Fresh names, "__" and a ULID of the current time each: first the result's, then the canary's.
  [[nodiscard]] static JobVariables fresh();
};

/// The fixed pieces of generated AppleScript. All are plain text without a line feed at the end; an action's script is
/// a list of such pieces and its own lines, joined with one line feed.
///
///     AppleScriptSnippets::jobForFrontTab("return clickPageElement(\"a\")", 1.0, 0.2)
///
/// The failure numbers in them come from `AppleScriptRuntimeError`. Safe to use from any thread.
class AppleScriptSnippets {
public:
  AppleScriptSnippets() = delete;

  /// Ends the script in `noOpenWindows` unless the browser has a window.
  [[nodiscard]] static const std::string& openWindowsCheck();

  /// Binds `nativeWindow` and `REQUESTED_WINDOW`, or ends the script in `windowNotFound`. `windowID` is a `nativeID`
  /// and goes into the text as it is.
  [[nodiscard]] static std::string requestedWindowCheck(std::string_view windowID);

  /// Binds `FRONT_WINDOW`, `FRONT_WINDOW_ID`, `FRONT_TAB` and `FRONT_TAB_ID`. There must be a window.
  [[nodiscard]] static const std::string& frontVariables();

  /// The variables that `tabLookup` leaves behind, beside `tabID`.
  enum class TabLookupBinds { tabAndWindow, tab };

  /// Binds `tabID`, `nativeTab` and, unless told otherwise, `nativeWindow`, or ends the script in `tabNotFound`.
  /// `tabFullID` is the full id of a tab, context id included.
  [[nodiscard]] static std::string tabLookup(std::string_view tabFullID,
                                             TabLookupBinds binds = TabLookupBinds::tabAndWindow);

  /// A whole script: checks for windows, binds the front variables, and runs `js` as a job in the front tab.
  [[nodiscard]] static std::string jobForFrontTab(std::string_view js, double timeout, double interval);

  /// A whole script: checks for windows, looks up the tab by its full id, and runs `js` as a job in it.
  [[nodiscard]] static std::string jobForRequestedTab(std::string_view tabFullID, std::string_view js, double timeout,
                                                      double interval);

  /// The keys of `typing`.
  struct Keystrokes {
    /// UTF-8, of any length; it is escaped here.
    std::string_view text;
    std::span<const std::string_view> modifiers; ///< held with each: "command", "option", "control", "shift"
    double secondsBetween = 0.0;
  };
  /// A whole script for System Events: types a text into the application of that id, character by character, and brings
  /// it to the front before each.
  [[nodiscard]] static std::string typing(const Keystrokes& keystrokes, std::string_view targetID);

  /// Plants the job in `nativeTab`, which must be bound, and polls for its result until `timeout` seconds have gone in
  /// steps of `interval` seconds (both finite, `interval` above zero, else `std::invalid_argument`).
  ///
  /// `js` is the body of an asynchronous function that may call the page library. What it returns arrives as a list of
  /// texts: nested lists flattened, numbers and booleans in their text form, anything else as empty text. A thrown
  /// error arrives as its text, no value as `emptyResultMarker` alone. The script ends in `pageLoadDuringExecution`
  /// when the page goes away; when time runs out it goes on behind the job.
  [[nodiscard]] static std::string asyncJob(std::string_view js, double timeout, double interval);
  /// The same with given variable names.
  [[nodiscard]] static std::string asyncJob(std::string_view js, double timeout, double interval,
                                            const JobVariables& variables);

  /// JavaScript that loads its page anew: the body of a job that does nothing else.
  [[nodiscard]] static const std::string& pageReload();

  /// The one item of the result of a job that returned undefined or null: "res" and a ULID, the same for all jobs of
  /// this process.
  [[nodiscard]] static const std::string& emptyResultMarker();

  /// A complete program (not to be assembled) that yields the bundle id of the frontmost application if it is among
  /// `browserIDs`, else that of the application behind it, as a JSON text.
  [[nodiscard]] static std::string frontmostScriptText(std::span<const std::string> browserIDs);

  /// A complete program (not to be assembled) that touches the browser and its menus, so that the system asks the user
  /// for its permissions, and comes back to the application of the name `applicationName`. Yields the JSON text `true`.
  [[nodiscard]] static std::string permissionTriggerScript(std::string_view bundleID, std::string_view applicationName);
};

} // namespace tabwright::engine
