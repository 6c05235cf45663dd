// Each validation has a context of its own. The engine's check of a program's syntax is asked, not its evaluation: the
// answer is the same for what can stand in a function, and a text that closes the function early can't run here.
#include "engine/JavaScriptCoreSyntaxValidator.h"

#include "platform/Failure.h"
#include "platform/Logger.h"

#include <dlfcn.h>
#include <jsc/jsc.h>
#include <memory>
#include <string>

namespace tabwright::engine {
namespace {

const platform::Logger logger("JavascriptSyntaxValidator");

class LibraryFailure final : public platform::Failure {
public:
  explicit LibraryFailure(std::string reason) : reason_(std::move(reason)) {}
  [[nodiscard]] std::string errorDescription() const override {
    return "The JavaScript can't be checked, since JavaScriptCore couldn't be loaded: " + reason_;
  }
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"JavascriptSyntaxValidator", "libraryNotFound", std::nullopt};
  }

private:
  std::string reason_;
};

// The functions used, looked up in the library, which stays loaded until the process ends.
class JavaScriptCore {
public:
  static const JavaScriptCore& shared() {
    static const JavaScriptCore library;
    return library;
  }

  decltype(&jsc_context_new) contextNew = nullptr;
  decltype(&jsc_context_check_syntax) contextCheckSyntax = nullptr;
  decltype(&jsc_exception_to_string) exceptionToString = nullptr;
  decltype(&g_object_unref) objectUnref = nullptr;
  decltype(&g_free) free = nullptr;

private:
  JavaScriptCore() : handle_(dlopen("libjavascriptcoregtk-4.1.so.0", RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_)
      throw LibraryFailure(dlerror());
    find(contextNew, "jsc_context_new");
    find(contextCheckSyntax, "jsc_context_check_syntax");
    find(exceptionToString, "jsc_exception_to_string");
    find(objectUnref, "g_object_unref");
    find(free, "g_free");
  }

  template <class Function>
  void find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_, name));
    if (!function)
      throw LibraryFailure(dlerror());
  }

  void* handle_;
};

} // namespace

std::optional<std::string> JavaScriptCoreSyntaxValidator::validateJavascript(std::string_view js) {
  const JavaScriptCore& library = JavaScriptCore::shared();
  const auto unref = [&library](auto* object) {
    if (object)
      library.objectUnref(object);
  };
  const std::unique_ptr<JSCContext, decltype(unref)> context(library.contextNew(), unref);
  const std::string code = "(function() { " + std::string(js) + " })";
  JSCException* found = nullptr;
  library.contextCheckSyntax(context.get(), code.data(), static_cast<gssize>(code.size()), JSC_CHECK_SYNTAX_MODE_SCRIPT,
                             nullptr, 1, &found);
  const std::unique_ptr<JSCException, decltype(unref)> exception(found, unref);
  if (!exception) {
    logger.debug("sucess");
    return std::nullopt;
  }
  const std::unique_ptr<char, decltype(library.free)> text(library.exceptionToString(exception.get()), library.free);
  logger.debug("failure: {}", text.get());
  return std::string(text.get());
}

} // namespace tabwright::engine
