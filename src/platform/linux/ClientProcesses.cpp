// All windows are asked before the first answer is awaited. The requests of the extension are few and short enough to
// be written here, by the connection library's means for extensions, which spares a library.
#include "platform/linux/ClientProcesses.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/uio.h>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace tabwright::platform {

namespace {

xcb_extension_t resourceExtension{"X-Resource", 0};

constexpr std::uint8_t queryClientIDs = 4;
constexpr std::uint32_t localClientPID = 2;

/// The connection library fills in the opcode of the extension and the length.
struct Request {
  std::uint8_t major = 0, minor = 0;
  std::uint16_t length = 0;
  std::uint32_t specificationCount = 1;
  std::uint32_t client = 0; ///< any resource of the client
  std::uint32_t mask = localClientPID;
};
static_assert(sizeof(Request) == 16);

/// 32 bytes with the number of ids, then for each the client, the mask, the length in bytes, and the value.
struct Reply {
  std::array<std::uint32_t, 2> head;
  std::uint32_t idCount;
  std::array<std::uint32_t, 5> unused;
  std::array<std::uint32_t, 3> specification;
  std::uint32_t pid;
};

unsigned ask(xcb_connection_t* connection, std::uint32_t window) {
  Request request;
  request.client = window;
  // The library writes before the first part that it is given.
  std::array<iovec, 3> parts{{{}, {}, {&request, sizeof request}}};
  const xcb_protocol_request_t protocol{1, &resourceExtension, queryClientIDs, 0};
  return xcb_send_request(connection, XCB_REQUEST_CHECKED, parts.data() + 2, &protocol);
}

pid_t answer(xcb_connection_t* connection, unsigned sequence) {
  xcb_generic_error_t* error = nullptr;
  const std::unique_ptr<void, decltype(&std::free)> data(xcb_wait_for_reply(connection, sequence, &error), &std::free);
  std::free(error);
  constexpr std::uint32_t wordsBehindHead = (sizeof(Reply) - 32) / 4;
  if (!data || static_cast<const xcb_generic_reply_t*>(data.get())->length < wordsBehindHead)
    return 0;
  Reply reply;
  std::memcpy(&reply, data.get(), sizeof reply);
  // A client from another machine has no id of this kind, and a window that has gone has no client.
  return reply.idCount == 1 && reply.specification[2] == sizeof reply.pid ? static_cast<pid_t>(reply.pid) : 0;
}

} // namespace

void tellProcesses(xcb_connection_t* connection, std::vector<ClientWindow>& windows) {
  std::vector<std::pair<ClientWindow*, unsigned>> asked;
  for (ClientWindow& window : windows) {
    if (window.pid != 0)
      continue;
    // Asked in the loop, so that displays whose windows all tell their process are asked nothing; the library keeps the
    // answer.
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &resourceExtension);
    if (extension == nullptr || extension->present == 0)
      return;
    asked.emplace_back(&window, ask(connection, window.id));
  }
  for (const auto& [window, sequence] : asked)
    window->pid = answer(connection, sequence);
}

} // namespace tabwright::platform
