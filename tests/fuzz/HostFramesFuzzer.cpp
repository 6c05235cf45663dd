// Any bytes on the host's socket, at either end: the host answers or ends the connection, the client comes to an
// outcome.
#include "app/Composition.h"
#include "app/HostConnection.h"
#include "client/HostConversation.h"

#include <boost/asio/io_context.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

using namespace tabwright;

namespace {

/// Serves nobody, so that no action runs for the client.
class NoService final : public app::HostService {
public:
  bool serves(std::string_view) override { return false; }
};

/// One end of a connection on which `bytes` have come and no more will.
class Endpoint {
public:
  explicit Endpoint(std::string_view bytes) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0 ||
        ::send(ends_[1], bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) !=
            static_cast<ssize_t>(bytes.size()) ||
        ::shutdown(ends_[1], SHUT_WR) != 0)
      std::abort();
  }
  ~Endpoint() { ::close(ends_[1]); }
  Endpoint(const Endpoint&) = delete;
  Endpoint& operator=(const Endpoint&) = delete;
  [[nodiscard]] int socket() const { return ends_[0]; }

private:
  int ends_[2]{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const app::Composition composition;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  {
    const Endpoint endpoint(bytes);
    NoService service;
    boost::asio::io_context context;
    bool hasEnded = false;
    app::HostConnection connection(context.get_executor(), endpoint.socket(), composition.catalogue(), service);
    connection.serve([&] { hasEnded = true; });
    context.run();
    if (!hasEnded)
      std::abort();
  }
  // A host that asks for files would be given those of this machine.
  if (bytes.find("tabwright/read") == std::string_view::npos && bytes.find("\\u") == std::string_view::npos) {
    const Endpoint endpoint(bytes);
    static_cast<void>(
        client::runThroughHost(endpoint.socket(), {"NoSuchAction"}, [](const std::string&, const std::string&) {}));
    ::close(endpoint.socket());
  }
  return 0;
}
