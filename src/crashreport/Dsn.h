#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::crashreport {

/// The address of a project at a collector of error reports, taken apart by the rules of
/// https://develop.sentry.dev/sdk/foundations/transport/authentication/:
///
///     Dsn::parse("https://key@reports.example/path/42")
///     // posts to https://reports.example/path/api/42/envelope/ with the key "key"
///
/// Reports go over TLS: "http" is taken for addresses of this machine alone (127.0.0.0/8, localhost, [::1]).
struct Dsn {
  std::string envelopeURL; ///< where envelopes are posted to
  std::string publicKey;   ///< names the project's sender; no secret

  /// Nothing for a text of another form.
  [[nodiscard]] static std::optional<Dsn> parse(std::string_view text);
};

} // namespace tabwright::crashreport
