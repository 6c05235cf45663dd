#pragma once

#include "scripting/driver/BrowserDriver.h"
#include "support/JavaScriptContext.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <memory>
#include <stdexcept>
#include <string>

namespace tabwright::testsupport {

/// A page in JavaScriptCore: jobs really run, over a few stand-ins for the document. `fields` maps selectors to what
/// `querySelector` finds, `links` is what `a[href]` finds, typed text becomes a field's `value`, time passes only when
/// a script waits for a timer, `done` is the list of what was done to the page:
///
///     ModelPage page;
///     page.run(R"(fields['[name="email"]'] = input("email");)");
///     browser.page = page.answers();
class ModelPage {
public:
  ModelPage() { load(); }

  /// Another document in the place of this one: everything that scripts have left is gone.
  void load() {
    context_ = std::make_unique<JavaScriptContext>();
    context_->evaluate(document);
  }

  /// The value of a JavaScript text, null for undefined. Throws `std::runtime_error` for an exception.
  boost::json::value run(const std::string& javascript) {
    const std::string json = context_->evaluate(javascript);
    return json == "undefined" ? boost::json::value() : boost::json::parse(json);
  }

  /// Answers JavaScript as a browser does: exceptions give no value.
  auto answers() {
    return [this](scripting::TabID, const std::string& javascript) -> boost::json::value {
      try {
        return run(javascript);
      } catch (const std::runtime_error&) {
        return nullptr;
      }
    };
  }

private:
  static constexpr const char* document = R"JS(
    var window = globalThis, navigator = { userAgent: "Chrome/156.0.0.0 Version/17.4" };
    var done = [], fields = {}, links = [], active = null, now = 0;
    var form = { submit() { done.push("submit"); } };
    var document = {
      readyState: "complete",
      querySelector(selector) {
        if (selector === "!") { throw new SyntaxError(`no selector: ${selector}`); }
        return fields[selector] ?? null;
      },
      querySelectorAll: selector => selector === "a[href]" ? links : [fields[selector]].flat(),
      execCommand(command, _, text) { if (command === "insertText") { active.value = text; } },
    };
    Date.now = () => now;
    var setTimeout = (resume, milliseconds) => { now += milliseconds; Promise.resolve().then(resume); };
    class Event { constructor(name) { this.name = name; } }
    class PointerEvent extends Event {}
    class HTMLElement {
      hidden = false;
      constructor(properties) { Object.assign(this, properties); }
      closest() { return this.parent ?? form; }
      focus() { active = this; }
      click() { done.push("click"); }
      scrollIntoView({ behavior, block }) { done.push(`scroll ${behavior} ${block}`); }
      dispatchEvent(event) { done.push(event.name); }
    }
    const input = (type, more = {}) => new HTMLElement({ tagName: "INPUT", type, value: "", ...more });
    const link = innerText => ({ innerText, dispatchEvent(event) { done.push(`${event.name} ${innerText}`); } });
  )JS";

  std::unique_ptr<JavaScriptContext> context_;
};

} // namespace tabwright::testsupport
