// Specifiers are nodes that never change and point outwards, to their containers, so that any number of names may share
// the chain that they hang from. The functions here make steps and compare chains; no application is asked. Walks go
// along the chain in loops, since a script can make one of any length.
#include "applescript/values/ObjectSpecifier.h"

#include "applescript/values/Comparison.h"
#include "applescript/values/Names.h"
#include "applescript/values/ScriptableApplication.h"

#include <utility>

namespace tabwright::applescript {

namespace {

std::shared_ptr<ObjectSpecifier> stepInto(SpecifierPointer container, ObjectSpecifier::Form form,
                                          FourCharCode desiredClass, Value key = {}) {
  auto specifier = std::make_shared<ObjectSpecifier>();
  specifier->form = form;
  specifier->desiredClass = desiredClass;
  specifier->application = container->application;
  specifier->container = std::move(container);
  specifier->key = std::move(key);
  return specifier;
}

bool sameApplication(const ObjectSpecifier& left, const ObjectSpecifier& right) {
  if (!left.application || !right.application)
    return left.application == right.application;
  return left.application == right.application ||
         sameName(left.application->bundleIdentifier(), right.application->bundleIdentifier());
}

/// Ends a test that nobody else holds, behind those whose end is under way: what it holds may hold tests in turn.
void endLater(std::shared_ptr<const SpecifierTest> test) {
  thread_local std::vector<std::shared_ptr<const SpecifierTest>> ending;
  thread_local bool isEnding = false;
  ending.push_back(std::move(test));
  if (isEnding)
    return;
  isEnding = true;
  while (!ending.empty()) {
    const auto last = std::move(ending.back());
    ending.pop_back();
  }
  isEnding = false;
}

} // namespace

ObjectSpecifier::~ObjectSpecifier() {
  // Each link is cut before it ends, as long as nobody else holds it.
  while (container && container.use_count() == 1)
    container = std::exchange(const_cast<ObjectSpecifier&>(*container).container, nullptr);
  if (test && test.use_count() == 1)
    endLater(std::move(test));
}

SpecifierPointer applicationRoot(std::shared_ptr<ScriptableApplication> application) {
  auto root = std::make_shared<ObjectSpecifier>();
  root->application = std::move(application);
  return root;
}

SpecifierPointer propertyOf(SpecifierPointer container, FourCharCode property) {
  return stepInto(std::move(container), ObjectSpecifier::Form::property, property);
}

SpecifierPointer elementByIndex(SpecifierPointer container, FourCharCode elementClass, std::int64_t index) {
  return stepInto(std::move(container), ObjectSpecifier::Form::index, elementClass, index);
}

SpecifierPointer elementByID(SpecifierPointer container, FourCharCode elementClass, Value id) {
  return stepInto(std::move(container), ObjectSpecifier::Form::id, elementClass, std::move(id));
}

SpecifierPointer elementByName(SpecifierPointer container, FourCharCode elementClass, std::string name) {
  return stepInto(std::move(container), ObjectSpecifier::Form::name, elementClass, Value(std::move(name)));
}

SpecifierPointer everyElement(SpecifierPointer container, FourCharCode elementClass) {
  return stepInto(std::move(container), ObjectSpecifier::Form::every, elementClass);
}

const ObjectSpecifier& rootOf(const ObjectSpecifier& specifier) {
  const ObjectSpecifier* node = &specifier;
  while (node->container)
    node = node->container.get();
  return *node;
}

bool sameSpecifier(const ObjectSpecifier& left, const ObjectSpecifier& right) {
  const ObjectSpecifier* a = &left;
  const ObjectSpecifier* b = &right;
  for (; a && b; a = a->container.get(), b = b->container.get()) {
    // From a shared node outwards the chains are one.
    if (a == b)
      return true;
    // Keys that texts give are compared exactly: ids differ in case.
    const TextAttributes exactly{.considersCase = true};
    if (a->form != b->form || a->desiredClass != b->desiredClass || a->test != b->test || !sameApplication(*a, *b) ||
        !equalValues(a->key, b->key, exactly) || !equalValues(a->rangeEnd, b->rangeEnd, exactly))
      return false;
  }
  return !a && !b;
}

} // namespace tabwright::applescript
