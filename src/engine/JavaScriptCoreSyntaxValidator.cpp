// The engine's check of a program's syntax is asked, not its evaluation: the answer is the same for what can stand in a
// function, and a text that closes the function early can't run here. The library is opened by name instead of linked,
// so the program starts without it and where it isn't installed.
#include "engine/JavaScriptCoreSyntaxValidator.h"

#include "platform/Failure.h"
#include "platform/Logger.h"

#include <unicode/unistr.h>

#include <JavaScriptCore/JavaScript.h>
#include <cstdint>
#include <dlfcn.h>
#include <string>

namespace tabwright::engine {
namespace {

const platform::Logger validatorLog("JavascriptSyntaxValidator");

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

  decltype(&JSGlobalContextCreate) contextCreate = nullptr;
  decltype(&JSGlobalContextRelease) contextRelease = nullptr;
  decltype(&JSCheckScriptSyntax) checkScriptSyntax = nullptr;
  decltype(&JSValueToStringCopy) valueToStringCopy = nullptr;
  decltype(&JSStringCreateWithCharacters) stringCreate = nullptr;
  decltype(&JSStringGetMaximumUTF8CStringSize) stringMaximumSize = nullptr;
  decltype(&JSStringGetUTF8CString) stringGetUTF8 = nullptr;
  decltype(&JSStringRelease) stringRelease = nullptr;
  /// Collects at once. `JSGarbageCollect`, its relative with a header, only asks for a collection that a thread
  /// without a run loop never comes to.
  decltype(&JSGarbageCollect) collectGarbage = nullptr;

private:
  JavaScriptCore() : handle_(dlopen("libjavascriptcoregtk-4.1.so.0", RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_)
      throw LibraryFailure(dlerror());
    find(contextCreate, "JSGlobalContextCreate");
    find(contextRelease, "JSGlobalContextRelease");
    find(checkScriptSyntax, "JSCheckScriptSyntax");
    find(valueToStringCopy, "JSValueToStringCopy");
    find(stringCreate, "JSStringCreateWithCharacters");
    find(stringMaximumSize, "JSStringGetMaximumUTF8CStringSize");
    find(stringGetUTF8, "JSStringGetUTF8CString");
    find(stringRelease, "JSStringRelease");
    find(collectGarbage, "JSSynchronousGarbageCollectForDebugging");
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

/// One context for all checks, one at a time: a check runs nothing, so it leaves nothing behind for the next one but
/// garbage.
class JavaScriptCoreSyntaxValidator::Engine {
public:
  Engine() : context_(library_.contextCreate(nullptr)) {}
  ~Engine() { library_.contextRelease(context_); }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  /// The exception's text.
  std::optional<std::string> check(std::string_view code) {
    // A check leaves garbage in the context that nothing else would collect.
    if (++checks_ % checksBetweenCollections == 0)
      library_.collectGarbage(context_);
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(code.data(), static_cast<std::int32_t>(code.size())));
    const String script = owned(library_.stringCreate(reinterpret_cast<const JSChar*>(text.getBuffer()),
                                                      static_cast<std::size_t>(text.length())));
    JSValueRef exception = nullptr;
    if (library_.checkScriptSyntax(context_, script.get(), nullptr, 1, &exception))
      return std::nullopt;
    const String sentence = owned(library_.valueToStringCopy(context_, exception, nullptr));
    if (!sentence)
      return std::string();
    std::string utf8(library_.stringMaximumSize(sentence.get()), '\0');
    utf8.resize(library_.stringGetUTF8(sentence.get(), utf8.data(), utf8.size()) - 1); // the closing NUL counts
    return utf8;
  }

private:
  static constexpr std::uint64_t checksBetweenCollections = 256; // some 0.2 ms and 200 kB

  using String = std::unique_ptr<OpaqueJSString, decltype(&JSStringRelease)>;
  [[nodiscard]] String owned(JSStringRef string) const { return {string, library_.stringRelease}; }

  const JavaScriptCore& library_ = JavaScriptCore::shared();
  std::uint64_t checks_ = 0;
  JSGlobalContextRef context_;
};

JavaScriptCoreSyntaxValidator::JavaScriptCoreSyntaxValidator() = default;
JavaScriptCoreSyntaxValidator::~JavaScriptCoreSyntaxValidator() = default;

std::optional<std::string> JavaScriptCoreSyntaxValidator::validateJavascript(std::string_view js) {
  const platform::MutexLock lock(mutex_);
  if (!engine_)
    engine_ = std::make_unique<Engine>();
  // On one line: a comment at the text's end swallows the closing bracket, so such a text counts as malformed.
  std::optional<std::string> exception = engine_->check("(function() { " + std::string(js) + " })");
  if (exception)
    validatorLog.debug("failure: {}", *exception);
  else
    validatorLog.debug("sucess");
  return exception;
}

} // namespace tabwright::engine
