// The protocol's messages go over copies of standard input and output, on one thread; scripts have threads of their
// own.
#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/OutputStreams.h"
#include "app/commands/Commands.h"
#include "host/mcp/ToolServer.h"
#include "platform/linux/SystemClock.h"
#include "rpc/LineStream.h"
#include "rpc/Peer.h"

#include <boost/asio/this_coro.hpp>
#include <boost/system/error_code.hpp>

#include <chrono>
#include <csignal>
#include <unistd.h>

namespace tabwright::app {
namespace {

platform::Task<void> serve(const host::Catalogue& catalogue) {
  platform::SystemClock clock;
  rpc::LineStream stream(co_await boost::asio::this_coro::executor, ::dup(STDIN_FILENO), ::dup(STDOUT_FILENO));
  rpc::Peer peer(stream);
  const host::ToolServer server(peer, catalogue, clock, TABWRIGHT_VERSION);
  co_await peer.run();
  co_await stream.flush(std::chrono::seconds(5));
  // An agent that leaves ends the conversation; that is no failure.
  const boost::system::error_code error = stream.writeError();
  if (error && error != boost::system::errc::broken_pipe && error != boost::system::errc::connection_reset)
    throw OutputLost(error.value());
}

} // namespace

ExitCode mcp() {
  std::signal(SIGPIPE, SIG_IGN);
  Composition composition;
  runInterruptibly(serve(composition.catalogue()));
  return ExitCode::done;
}

} // namespace tabwright::app
