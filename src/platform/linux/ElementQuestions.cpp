// A row for each part, with the question in AT-SPI's words and the function that reads its answer; toolkits differ in
// what they leave out, so an answer of another shape is passed over and never a failure. Some parts are properties,
// which D-Bus's own interface gives, and the others methods.
#include "platform/linux/ElementQuestions.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <systemd/sd-bus.h>

namespace tabwright::platform {

namespace {

// AT-SPI's reference to no element.
constexpr std::string_view nullPath = "/org/a11y/atspi/null";

void takeText(sd_bus_message* answer, std::optional<std::string>& text) {
  const char* value = nullptr;
  if (sd_bus_message_read(answer, "s", &value) > 0)
    text = value;
}

void takeTextProperty(sd_bus_message* answer, std::optional<std::string>& text) {
  const char* value = nullptr;
  if (sd_bus_message_read(answer, "v", "s", &value) > 0)
    text = value;
}

void takeRole(sd_bus_message* answer, AccessibleFacts& facts) {
  std::uint32_t role = 0;
  if (sd_bus_message_read(answer, "u", &role) > 0)
    facts.role = static_cast<AccessibleRole>(role);
}

void takeStates(sd_bus_message* answer, AccessibleFacts& facts) {
  const void* words = nullptr;
  std::size_t bytes = 0;
  if (sd_bus_message_read_array(answer, 'u', &words, &bytes) < 0)
    return;
  std::uint64_t bits = 0;
  // Two words of 32 bits by AT-SPI, the lower first; more would be states of a later version.
  for (std::size_t word = 0; word < std::min<std::size_t>(bytes / sizeof(std::uint32_t), 2); ++word)
    bits |= std::uint64_t{static_cast<const std::uint32_t*>(words)[word]} << 32 * word;
  facts.states = AccessibleStates(bits);
}

void takeParent(sd_bus_message* answer, AccessibleFacts& facts) {
  const char* application = nullptr;
  const char* path = nullptr;
  if (sd_bus_message_read(answer, "v", "(so)", &application, &path) > 0 && path != nullPath)
    facts.parent = AccessibleElement{application, path};
}

void takeAttributes(sd_bus_message* answer, AccessibleFacts& facts) {
  if (sd_bus_message_enter_container(answer, 'a', "{ss}") <= 0)
    return;
  auto& attributes = facts.attributes.emplace();
  const char* name = nullptr;
  const char* value = nullptr;
  while (sd_bus_message_read(answer, "{ss}", &name, &value) > 0)
    attributes.emplace_back(name, value);
}

// Name, description and keys; the first alone is wanted.
void takeActions(sd_bus_message* answer, AccessibleFacts& facts) {
  if (sd_bus_message_enter_container(answer, 'a', "(sss)") <= 0)
    return;
  auto& actions = facts.actions.emplace();
  const char* name = nullptr;
  const char* description = nullptr;
  const char* keys = nullptr;
  while (sd_bus_message_read(answer, "(sss)", &name, &description, &keys) > 0)
    actions.emplace_back(name);
}

void takeValue(sd_bus_message* answer, AccessibleFacts& facts) {
  double value = 0;
  if (sd_bus_message_read(answer, "v", "d", &value) > 0)
    facts.value = value;
}

void takeExtents(sd_bus_message* answer, AccessibleFacts& facts) {
  Rectangle place;
  if (sd_bus_message_read(answer, "(iiii)", &place.x, &place.y, &place.width, &place.height) > 0)
    facts.extents = place;
}

void fillWholeText(sd_bus_message* call) {
  // From the first character to the end, which AT-SPI calls -1.
  sd_bus_message_append(call, "ii", 0, -1);
}

void fillScreenCoordinates(sd_bus_message* call) {
  // AT-SPI's ATSPI_COORD_TYPE_SCREEN.
  sd_bus_message_append(call, "u", std::uint32_t{0});
}

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr auto method = ElementQuestion::method;
constexpr auto property = ElementQuestion::property;

constexpr std::array questions{
    ElementQuestion{&AccessibleParts::name, accessible, "Name", property, nullptr,
                    [](sd_bus_message* answer, AccessibleFacts& facts) { takeTextProperty(answer, facts.name); }},
    ElementQuestion{
        &AccessibleParts::description, accessible, "Description", property, nullptr,
        [](sd_bus_message* answer, AccessibleFacts& facts) { takeTextProperty(answer, facts.description); }},
    ElementQuestion{&AccessibleParts::role, accessible, "GetRole", method, nullptr, takeRole},
    ElementQuestion{&AccessibleParts::states, accessible, "GetState", method, nullptr, takeStates},
    ElementQuestion{&AccessibleParts::children, accessible, "GetChildren", method, nullptr,
                    [](sd_bus_message* answer, AccessibleFacts& facts) { facts.children = readElements(answer); }},
    ElementQuestion{&AccessibleParts::parent, accessible, "Parent", property, nullptr, takeParent},
    ElementQuestion{&AccessibleParts::attributes, accessible, "GetAttributes", method, nullptr, takeAttributes},
    ElementQuestion{&AccessibleParts::actions, "org.a11y.atspi.Action", "GetActions", method, nullptr, takeActions},
    ElementQuestion{&AccessibleParts::value, "org.a11y.atspi.Value", "CurrentValue", property, nullptr, takeValue},
    ElementQuestion{&AccessibleParts::text, "org.a11y.atspi.Text", "GetText", method, fillWholeText,
                    [](sd_bus_message* answer, AccessibleFacts& facts) { takeText(answer, facts.text); }},
    ElementQuestion{&AccessibleParts::extents, "org.a11y.atspi.Component", "GetExtents", method, fillScreenCoordinates,
                    takeExtents},
    ElementQuestion{&AccessibleParts::toolkit, "org.a11y.atspi.Application", "ToolkitName", property, nullptr,
                    [](sd_bus_message* answer, AccessibleFacts& facts) { takeTextProperty(answer, facts.toolkit); }},
};

} // namespace

std::span<const ElementQuestion> elementQuestions() {
  return questions;
}

// A message is read once, from front to back; so an answer that breaks off gives what came before.
std::vector<AccessibleElement> readElements(sd_bus_message* answer) {
  std::vector<AccessibleElement> elements;
  if (sd_bus_message_enter_container(answer, 'a', "(so)") <= 0)
    return elements;
  const char* application = nullptr;
  const char* path = nullptr;
  while (sd_bus_message_read(answer, "(so)", &application, &path) > 0) {
    if (path != nullPath)
      elements.push_back({application, path});
  }
  return elements;
}

} // namespace tabwright::platform
