#pragma once

#include "host/ParameterReader.h"
#include "support/PageServer.h"

#include <boost/json/value.hpp>

#include <functional>
#include <string>
#include <vector>

namespace tabwright::support {

/// Runs an action on the one browser there is, by its name in the catalogue, and gives its value.
using PerformAction = std::function<boost::json::value(const std::string& action, const host::ParameterTexts&)>;

/// One way in which an action makes the front tab's page leave, or seems to.
struct NavigationKind {
  enum class Leads {
    elsewhere, ///< to another document
    nowhere,   ///< the browser drops the navigation, or it stays within the document
    toAnErrorPage,
    toANewTab ///< which is then the front tab
  };

  std::string name;
  std::string action;
  host::ParameterTexts parameters;
  Leads leads = Leads::elsewhere;
};

/// Every kind, with the server of the pages that they lead between.
class NavigationKinds {
public:
  NavigationKinds();
  [[nodiscard]] const std::vector<NavigationKind>& all() const { return kinds_; }

  /// Makes the front tab show a page that all kinds can start from.
  void prepare(const PerformAction& perform) const;

  /// The outcome of a navigation that was followed at once by a read.
  struct Outcome {
    bool isStale = false;   ///< the read met the page from before, or another page than where the navigation led
    bool isPartial = false; ///< it met a document that was not there to its end
    std::string failure;    ///< the error's sentence where an action failed
    [[nodiscard]] bool isRight() const { return !isStale && !isPartial && failure.empty(); }
  };
  enum class Reads { page, listOfTabs };
  /// Navigates, reads at once, and puts the front tab back to where the next navigation can start.
  Outcome navigateAndRead(const NavigationKind& kind, Reads first, const PerformAction& perform) const;

private:
  PageServer pages_;
  std::vector<NavigationKind> kinds_;
};

} // namespace tabwright::support
