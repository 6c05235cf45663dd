#pragma once

#include <dlfcn.h>
#include <jsc/jsc.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace tabwright::testsupport {

/// A JavaScript context without a document. JavaScriptCore is loaded by hand, as the program does it: linked in, it
/// would take the test program's sanitized copies of library functions for its own.
class JavaScriptContext {
public:
  JavaScriptContext() : library_(Library::shared()), context_(library_.contextNew()) {}
  ~JavaScriptContext() { library_.objectUnref(context_); }
  JavaScriptContext(const JavaScriptContext&) = delete;
  JavaScriptContext& operator=(const JavaScriptContext&) = delete;

  /// The value of the text as JSON ("undefined" where it has none), once the jobs it queued have run. Throws the text
  /// of an exception.
  std::string evaluate(const std::string& code) const {
    JSCValue* const value = library_.contextEvaluate(context_, code.data(), static_cast<gssize>(code.size()));
    const std::unique_ptr<JSCValue, decltype(library_.objectUnref)> owner(value, library_.objectUnref);
    if (JSCException* exception = library_.contextGetException(context_)) {
      const std::string reason = taken(library_.exceptionToString(exception));
      library_.contextClearException(context_);
      throw std::runtime_error(reason);
    }
    char* const json = library_.valueToJSON(value, 0);
    return json ? taken(json) : "undefined";
  }

private:
  struct Library {
    static const Library& shared() {
      static const Library library;
      return library;
    }
    Library() : handle(dlopen("libjavascriptcoregtk-4.1.so.0", RTLD_NOW | RTLD_LOCAL)) {
      if (!handle)
        throw std::runtime_error(dlerror());
      find(contextNew, "jsc_context_new");
      find(contextEvaluate, "jsc_context_evaluate");
      find(contextGetException, "jsc_context_get_exception");
      find(contextClearException, "jsc_context_clear_exception");
      find(exceptionToString, "jsc_exception_to_string");
      find(valueToJSON, "jsc_value_to_json");
      find(objectUnref, "g_object_unref");
      find(free, "g_free");
    }
    template <class Function>
    void find(Function& function, const char* name) const {
      function = reinterpret_cast<Function>(dlsym(handle, name));
    }

    void* handle;
    decltype(&jsc_context_new) contextNew = nullptr;
    decltype(&jsc_context_evaluate) contextEvaluate = nullptr;
    decltype(&jsc_context_get_exception) contextGetException = nullptr;
    decltype(&jsc_context_clear_exception) contextClearException = nullptr;
    decltype(&jsc_exception_to_string) exceptionToString = nullptr;
    decltype(&jsc_value_to_json) valueToJSON = nullptr;
    decltype(&g_object_unref) objectUnref = nullptr;
    decltype(&g_free) free = nullptr;
  };

  std::string taken(char* text) const {
    std::string copy(text);
    library_.free(text);
    return copy;
  }

  const Library& library_;
  JSCContext* context_;
};

} // namespace tabwright::testsupport
