// The library's asynchronous calls do the work: each keeps a place in a queue of ours for its answer. Waiting is done
// here rather than by the library, in short naps, since a stop or a test's clock wakes no descriptor. Places in the
// queue are never moved, since the library holds a pointer to each, and are freed together when all are answered.
#include "platform/linux/BusConnection.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <systemd/sd-bus.h>
#include <utility>

namespace tabwright::platform {

namespace {

constexpr std::chrono::milliseconds nap{10};

int require(int result) {
  if (result < 0)
    throw BusLost(std::strerror(-result));
  return result;
}

struct Release {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Release>;

} // namespace

struct BusConnection::Pending {
  BusConnection* connection;
  std::string receiver;
  Take take;
  sd_bus_slot* slot = nullptr;
  bool isAnswered = false;

  ~Pending() { sd_bus_slot_unref(slot); }

  static int receive(sd_bus_message* answer, void* self, sd_bus_error*) {
    auto& pending = *static_cast<Pending*>(self);
    pending.isAnswered = true;
    --pending.connection->unanswered_;
    try {
      pending.take(answer);
    } catch (...) {
      // No exception may pass through the library's C.
      pending.connection->thrown_ = std::current_exception();
    }
    return 1;
  }
};

void BusConnection::Close::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

BusConnection::BusConnection(std::unique_ptr<sd_bus, Close> bus, bool isBus) : bus_(std::move(bus)), isBus_(isBus) {}
BusConnection::~BusConnection() = default;

std::unique_ptr<BusConnection> BusConnection::toSession() {
  sd_bus* bus = nullptr;
  require(sd_bus_open_user(&bus));
  return std::unique_ptr<BusConnection>(new BusConnection(std::unique_ptr<sd_bus, Close>(bus), true));
}

std::unique_ptr<BusConnection> BusConnection::to(const std::string& address) {
  return start(address, true);
}

std::unique_ptr<BusConnection> BusConnection::toProgram(const std::string& address) {
  return start(address, false);
}

std::unique_ptr<BusConnection> BusConnection::start(const std::string& address, bool isBus) {
  sd_bus* bus = nullptr;
  require(sd_bus_new(&bus));
  std::unique_ptr<sd_bus, Close> owner(bus);
  require(sd_bus_set_address(bus, address.c_str()));
  require(sd_bus_set_bus_client(bus, isBus ? 1 : 0));
  require(sd_bus_start(bus));
  return std::unique_ptr<BusConnection>(new BusConnection(std::move(owner), isBus));
}

void BusConnection::ask(const BusCall& call, const Fill& arguments, Take take) {
  sd_bus_message* made = nullptr;
  const char* destination = isBus_ ? call.destination : nullptr;
  require(sd_bus_message_new_method_call(bus_.get(), &made, destination, call.path, call.interface, call.member));
  const Message message(made);
  if (arguments)
    arguments(made);
  Pending& pending = calls_.emplace_back(this, call.destination, std::move(take));
  // Without a time limit of the library's: silence is measured here, over all calls together.
  require(sd_bus_call_async(bus_.get(), &pending.slot, made, &Pending::receive, &pending, UINT64_MAX));
  // Only once the call is out, so that a failure leaves nothing to wait for.
  ++unanswered_;
}

void BusConnection::askProperty(const BusCall& property, Take take) {
  ask(
      {property.destination, property.path, "org.freedesktop.DBus.Properties", "Get"},
      [&](sd_bus_message* message) {
        require(sd_bus_message_append(message, "ss", property.interface, property.member));
      },
      std::move(take));
}

void BusConnection::process() {
  while (require(sd_bus_process(bus_.get(), nullptr)) > 0) {
    if (thrown_)
      std::rethrow_exception(std::exchange(thrown_, nullptr));
  }
}

BusConnection::Outcome BusConnection::collect(const CallLimits& limits, std::chrono::milliseconds patience) {
  const Outcome outcome = collectUntil([this] { return pending() == 0; }, limits, patience);
  if (outcome == Outcome::answered) {
    calls_.clear();
  }
  return outcome;
}

BusConnection::Outcome BusConnection::collectUntil(const std::function<bool()>& isEnough, const CallLimits& limits,
                                                   std::chrono::milliseconds patience) {
  CallLimits silence = limits.within(patience);
  while (true) {
    const std::size_t before = unanswered_;
    process();
    // The library answers what was pending itself, with errors, when the bus goes away.
    if (sd_bus_is_open(bus_.get()) <= 0)
      throw BusLost("it has gone");
    if (isEnough())
      return Outcome::answered;
    if (limits.stop.stop_requested())
      return Outcome::stopped;
    // Each answer starts the patience anew: an application that works through a long list isn't silent.
    if (unanswered_ != before)
      silence = limits.within(patience);
    else if (silence.hasPassed())
      return Outcome::silent;
    const int events = require(sd_bus_get_events(bus_.get()));
    pollfd descriptor{require(sd_bus_get_fd(bus_.get())), static_cast<short>(events), 0};
    // A poll that fails, as by a signal, costs a look and nothing else.
    poll(&descriptor, 1, static_cast<int>(nap.count()));
  }
}

BusConnection::Outcome BusConnection::flush(const CallLimits& limits, std::chrono::milliseconds patience) {
  const auto isSent = [this] {
    std::uint64_t queued = 0;
    require(sd_bus_get_n_queued_write(bus_.get(), &queued));
    return queued == 0;
  };
  return collectUntil(isSent, limits, patience);
}

std::string BusConnection::silentReceiver() const {
  const auto silent = std::ranges::find(calls_, false, &Pending::isAnswered);
  return silent == calls_.end() ? std::string() : silent->receiver;
}

int BusConnection::descriptor() const {
  return require(sd_bus_get_fd(bus_.get()));
}

bool BusConnection::isAlive() {
  try {
    process();
    return sd_bus_is_open(bus_.get()) > 0;
  } catch (const BusLost&) {
    return false;
  }
}

} // namespace tabwright::platform
