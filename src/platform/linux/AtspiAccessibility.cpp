// Questions are sent in batches and answered in any order; an answer that is an error leaves its part empty, since an
// element may be gone by then, and only changes make a failure of it. Reads of one application go over a connection to
// itself where it offers one, and over the bus where that breaks; questions to several, to the registry and about
// processes go over the bus. An application that is silent is known by its process, which the bus tells.
#include "platform/linux/AtspiAccessibility.h"

#include "platform/DesktopFault.h"
#include "platform/Logger.h"
#include "platform/Sleep.h"
#include "platform/linux/ElementQuestions.h"
#include "platform/linux/ProcessAge.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <systemd/sd-bus.h>
#include <utility>

namespace tabwright::platform {

namespace {

const Logger atspiLog("AtspiAccessibility");

/// Questions under way at once; a bus takes some thousands before it refuses.
constexpr std::size_t mostPending = 1000;

constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

bool isError(sd_bus_message* answer) {
  return sd_bus_message_is_method_error(answer, nullptr) > 0;
}

/// Throws what an error says of an element that was to do something.
void requireDone(sd_bus_message* answer) {
  if (!isError(answer))
    return;
  constexpr std::array<std::string_view, 4> goneErrors{SD_BUS_ERROR_SERVICE_UNKNOWN, SD_BUS_ERROR_NAME_HAS_NO_OWNER,
                                                       SD_BUS_ERROR_NO_REPLY, SD_BUS_ERROR_UNKNOWN_OBJECT};
  const sd_bus_error* error = sd_bus_message_get_error(answer);
  if (std::ranges::find(goneErrors, std::string_view(error->name)) != goneErrors.end())
    throw failure(DesktopFault::elementGone);
  if (std::string_view(error->name) == SD_BUS_ERROR_UNKNOWN_METHOD ||
      std::string_view(error->name) == SD_BUS_ERROR_UNKNOWN_INTERFACE)
    throw failure(DesktopFault::elementRefused, "it isn’t of a kind that takes this");
  throw failure(DesktopFault::elementRefused, error->message != nullptr ? error->message : error->name);
}

void askProcess(BusConnection& bus, const std::string& application, std::function<void(pid_t)> take) {
  bus.ask(
      {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixProcessID"},
      [&](sd_bus_message* call) { sd_bus_message_append(call, "s", application.c_str()); },
      [take = std::move(take)](sd_bus_message* answer) {
        std::uint32_t process = 0;
        if (sd_bus_message_read(answer, "u", &process) > 0)
          take(static_cast<pid_t>(process));
      });
}

void askRole(BusConnection& connection, const AccessibleElement& element, const std::function<void()>& take) {
  connection.ask({element.application.c_str(), element.path.c_str(), "org.a11y.atspi.Accessible", "GetRole"}, {},
                 [take](sd_bus_message*) {
                   if (take)
                     take();
                 });
}

} // namespace

AtspiAccessibility::AtspiAccessibility(std::string display) : bus_(std::move(display)) {}

void AtspiAccessibility::requireAnswered(BusConnection::Outcome outcome, const std::string& application) {
  if (outcome == BusConnection::Outcome::stopped)
    throw failure(DesktopFault::stopped);
  if (outcome == BusConnection::Outcome::answered)
    return;
  // The bus knows the process of an application that answers nothing itself.
  const auto bus = bus_.take({});
  pid_t process = 0;
  askProcess(*bus, application, [&](pid_t told) { process = told; });
  bus->collectUntil([&] { return process != 0; }, {}, longestSilence);
  throw failure(DesktopFault::notAnswering, process != 0 ? describeProcess(process) : "The application");
}

void AtspiAccessibility::onBus(const CallLimits& limits, const Work& work) {
  auto bus = bus_.take(limits);
  try {
    const BusConnection::Outcome outcome = work(*bus);
    requireAnswered(outcome, bus->silentReceiver());
    if (bus->pending() == 0)
      bus_.giveBack(std::move(bus));
  } catch (const BusLost& lost) {
    throw failure(DesktopFault::noAccessibilityBus, lost.what());
  }
}

std::string AtspiAccessibility::addressOf(const std::string& application, const CallLimits& limits) {
  std::string address;
  onBus(limits, [&](BusConnection& bus) {
    bus.ask({application.c_str(), rootPath, "org.a11y.atspi.Application", "GetApplicationBusAddress"}, {},
            [&](sd_bus_message* answer) {
              const char* told = nullptr;
              if (!isError(answer) && sd_bus_message_read(answer, "s", &told) > 0)
                address = told;
            });
    return bus.collect(limits, longestSilence);
  });
  // The application may be a sandboxed one, and other addresses start programs ("unixexec:") or leave the machine. A
  // semicolon would part a list of addresses, of which the second may be of such a kind.
  const bool isSocket = address.starts_with("unix:") && !address.contains(';');
  return isSocket ? address : std::string();
}

void AtspiAccessibility::onRoadTo(const std::string& application, const CallLimits& limits, const Work& work) {
  if (auto own = programs_.take(application, [&] { return addressOf(application, limits); })) {
    try {
      requireAnswered(work(*own), application);
      if (own->pending() == 0)
        programs_.giveBack(application, std::move(own));
      return;
    } catch (const BusLost& lost) {
      atspiLog.debug("A connection to an application broke: {}", lost.what());
    }
  }
  onBus(limits, work);
}

std::vector<AccessibleApplication> AtspiAccessibility::applications(const CallLimits& limits) {
  std::vector<AccessibleApplication> applications;
  onBus(limits, [&](BusConnection& bus) {
    bus.ask({registry, rootPath, "org.a11y.atspi.Accessible", "GetChildren"}, {}, [&](sd_bus_message* answer) {
      // Their processes follow, in one go too.
      for (AccessibleElement& root : readElements(answer))
        applications.push_back({std::move(root), 0});
    });
    // The registry's first answer may have to wait for the registry to be started.
    const BusConnection::Outcome outcome = bus.collect(limits, longestArrival);
    if (outcome != BusConnection::Outcome::answered)
      return outcome;
    for (AccessibleApplication& application : applications)
      askProcess(bus, application.root.application, [&](pid_t process) { application.process = process; });
    return bus.collect(limits, longestSilence);
  });
  std::erase_if(applications, [](const AccessibleApplication& each) { return each.process == 0; });
  return applications;
}

std::optional<AccessibleElement> AtspiAccessibility::findApplication(pid_t process, const CallLimits& limits) {
  const CallLimits arrival = limits.within(longestArrival);
  while (true) {
    const std::vector<AccessibleApplication> all = applications(limits);
    const auto found = std::ranges::find(all, process, &AccessibleApplication::process);
    if (found != all.end())
      return found->root;
    // Programs that have run for long and aren't on the bus won't come, but for those that join when accessibility is
    // switched on.
    const auto age = ageOfProcess(process);
    if (!age || arrival.hasPassed() || (*age > longestStart && !bus_.hasJustBeenSwitchedOn()))
      return std::nullopt;
    sleepWithin(arrival, std::chrono::milliseconds(20));
    if (limits.stop.stop_requested())
      throw failure(DesktopFault::stopped);
  }
}

std::vector<AccessibleFacts> AtspiAccessibility::read(std::span<const AccessibleElement> elements,
                                                      const AccessibleParts& parts, const CallLimits& limits) {
  std::vector<AccessibleFacts> facts(elements.size());
  if (elements.empty())
    return facts;
  const std::string& application = elements.front().application;
  // Nearly always so; elements of several applications have only the bus in common.
  const bool isOne = std::ranges::all_of(
      elements, [&](const AccessibleElement& element) { return element.application == application; });
  const Work ask = [&](BusConnection& bus) {
    for (std::size_t each = 0; each < elements.size(); ++each) {
      for (const ElementQuestion& question : elementQuestions()) {
        if (!(parts.*question.part))
          continue;
        const BusCall call{elements[each].application.c_str(), elements[each].path.c_str(), question.interface,
                           question.member};
        BusConnection::Take take = [&, &told = facts[each]](sd_bus_message* answer) {
          if (!isError(answer))
            question.take(answer, told);
        };
        if (question.kind == ElementQuestion::property)
          bus.askProperty(call, std::move(take));
        else
          bus.ask(call, question.fill, std::move(take));
      }
      // All are under way before the first answer is awaited, within what a bus takes.
      if (bus.pending() < mostPending && each + 1 < elements.size())
        continue;
      const BusConnection::Outcome outcome = bus.collect(limits, longestSilence);
      if (outcome != BusConnection::Outcome::answered)
        return outcome;
    }
    return BusConnection::Outcome::answered;
  };
  if (isOne)
    onRoadTo(application, limits, ask);
  else
    onBus(limits, ask);
  return facts;
}

bool AtspiAccessibility::hasDialog(const std::string& application, const CallLimits& limits) {
  const AccessibleElement root{application, rootPath};
  const std::vector<AccessibleElement> windows =
      read({&root, 1}, {.children = true}, limits).front().children.value_or(std::vector<AccessibleElement>{});
  return std::ranges::any_of(read(windows, {.states = true}, limits), [](const AccessibleFacts& window) {
    return window.states && window.states->has(AccessibleState::modal);
  });
}

// GTK may do nothing else on the connection by which an action came that opens a dialog, until the dialog is closed. So
// an action goes by a connection of its own.
void AtspiAccessibility::perform(const AccessibleElement& element, std::size_t action, const CallLimits& limits) {
  struct Taking {
    bool isAwaited = true;
    bool isDone = false;
  };
  const std::string& application = element.application;
  // No dialog: the application is done with all earlier actions.
  if (programs_.holds(application) && !hasDialog(application, limits))
    programs_.release(application);
  auto own = programs_.open(application, [&] { return addressOf(application, limits); });
  const auto taking = std::make_shared<Taking>(); // the answer may come after the end of this
  const auto act = [&](BusConnection& connection) {
    connection.ask(
        {application.c_str(), element.path.c_str(), "org.a11y.atspi.Action", "DoAction"},
        [&](sd_bus_message* call) { sd_bus_message_append(call, "i", static_cast<std::int32_t>(action)); },
        [taking](sd_bus_message* answer) {
          if (taking->isAwaited)
            requireDone(answer);
          taking->isDone = true;
        });
  };
  // However it ends, the action may have gone out, and its connection must stay open.
  const auto leave = [&] {
    taking->isAwaited = false;
    if (own)
      programs_.hold(application, std::move(own));
  };
  try {
    onBus(limits, [&](BusConnection& bus) {
      act(own ? *own : bus);
      if (!own) {
        // Qt answers an action that opens a dialog when the dialog closes, but other questions as soon as it is open.
        askRole(bus, element, [taking] { taking->isDone = true; });
        return bus.collectUntil([&] { return taking->isDone; }, limits, longestSilence);
      }
      try {
        if (const auto outcome = own->flush(limits, longestSilence); outcome != BusConnection::Outcome::answered)
          return outcome;
      } catch (const BusLost&) {
        throw failure(DesktopFault::elementGone); // the application ended before it could be asked
      }
      // An application works all its connections off in turn: by the second answer here it has begun with the action.
      for (int answers = 0; answers < 2; ++answers) {
        askRole(bus, element, {});
        const BusConnection::Outcome outcome = bus.collect(limits, longestSilence);
        if (outcome != BusConnection::Outcome::answered)
          return outcome;
      }
      try {
        (void)own->collectUntil([&] { return taking->isDone; }, limits, {});
      } catch (const BusLost&) {
        // It was to quit, and has.
      }
      return BusConnection::Outcome::answered;
    });
  } catch (...) {
    leave();
    throw;
  }
  leave();
}

void AtspiAccessibility::operate(const AccessibleElement& element, const char* interface, const char* member,
                                 Reply reply, const BusConnection::Fill& arguments, const CallLimits& limits) {
  onRoadTo(element.application, limits, [&](BusConnection& bus) {
    bus.ask({element.application.c_str(), element.path.c_str(), interface, member}, arguments,
            [reply](sd_bus_message* answer) {
              requireDone(answer);
              int isDone = 1;
              if (reply == Reply::success && sd_bus_message_read(answer, "b", &isDone) > 0 && isDone == 0)
                throw failure(DesktopFault::elementRefused, "it doesn’t take it");
            });
    return bus.collect(limits, longestSilence);
  });
}

void AtspiAccessibility::setText(const AccessibleElement& element, const std::string& text, const CallLimits& limits) {
  operate(
      element, "org.a11y.atspi.EditableText", "SetTextContents", Reply::success,
      [&](sd_bus_message* call) { sd_bus_message_append(call, "s", text.c_str()); }, limits);
}

void AtspiAccessibility::setValue(const AccessibleElement& element, double value, const CallLimits& limits) {
  operate(
      element, properties, "Set", Reply::nothing,
      [&](sd_bus_message* call) {
        sd_bus_message_append(call, "ssv", "org.a11y.atspi.Value", "CurrentValue", "d", value);
      },
      limits);
}

void AtspiAccessibility::focus(const AccessibleElement& element, const CallLimits& limits) {
  operate(element, "org.a11y.atspi.Component", "GrabFocus", Reply::success, {}, limits);
}

} // namespace tabwright::platform
