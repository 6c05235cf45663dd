#pragma once

#include <jsc/jsc.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace tabwright::testsupport {

/// A JavaScript context without a document.
class JavaScriptContext {
public:
  JavaScriptContext() : context_(jsc_context_new()) {}
  ~JavaScriptContext() { g_object_unref(context_); }
  JavaScriptContext(const JavaScriptContext&) = delete;
  JavaScriptContext& operator=(const JavaScriptContext&) = delete;

  /// The value of the text as JSON ("undefined" where it has none), once the jobs it queued have run. Throws the text of
  /// an exception.
  std::string evaluate(const std::string& code) const {
    JSCValue* const value = jsc_context_evaluate(context_, code.data(), static_cast<gssize>(code.size()));
    const std::unique_ptr<JSCValue, decltype(&g_object_unref)> owner(value, &g_object_unref);
    if (JSCException* exception = jsc_context_get_exception(context_)) {
      const std::unique_ptr<char, decltype(&g_free)> text(jsc_exception_to_string(exception), &g_free);
      const std::string reason(text.get());
      jsc_context_clear_exception(context_);
      throw std::runtime_error(reason);
    }
    const std::unique_ptr<char, decltype(&g_free)> json(jsc_value_to_json(value, 0), &g_free);
    return json ? json.get() : "undefined";
  }

private:
  JSCContext* context_;
};

} // namespace tabwright::testsupport
