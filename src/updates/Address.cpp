// Addresses are read by the library that will fetch them, so that both see the same host in them.
#include "updates/Address.h"

#include "updates/UpdateCurl.h"
#include "updates/UpdateFault.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <memory>
#include <netinet/in.h>

namespace tabwright::updates {
namespace {

std::string partOf(CURLU* address, CURLUPart part) {
  const platform::CurlLibrary& curl = requireCurl();
  char* text = nullptr;
  if (curl.urlGet(address, part, &text, 0) != CURLUE_OK)
    return {};
  const std::unique_ptr<char, void (*)(void*)> owner(text, curl.free);
  return text;
}

struct AddressParts {
  std::string scheme; ///< empty for what is no address
  std::string host;
};

AddressParts partsOf(const std::string& address) {
  const platform::CurlLibrary& curl = requireCurl();
  const std::unique_ptr<CURLU, void (*)(CURLU*)> reader(curl.url(), curl.urlCleanup);
  if (!reader || curl.urlSet(reader.get(), CURLUPART_URL, address.c_str(), 0) != CURLUE_OK)
    return {};
  return {partOf(reader.get(), CURLUPART_SCHEME), partOf(reader.get(), CURLUPART_HOST)};
}

bool isLoopback(const std::string& host) {
  in_addr number{};
  if (::inet_pton(AF_INET, host.c_str(), &number) == 1)
    return (ntohl(number.s_addr) >> 24U) == 127;
  return host == "localhost" || host == "[::1]";
}

bool isPlainLoopback(const AddressParts& parts) {
  return parts.scheme == "http" && isLoopback(parts.host);
}

} // namespace

void requireSecure(const std::string& address) {
  const AddressParts parts = partsOf(address);
  if (parts.scheme != "https" && !isPlainLoopback(parts))
    throw platform::failure(UpdateFault::insecureAddress, address);
}

void requireSecure(const std::string& address, const std::string& from) {
  requireSecure(address);
  if (partsOf(from).scheme == "https" && partsOf(address).scheme != "https")
    throw platform::failure(UpdateFault::insecureAddress, address);
}

bool isOnThisMachine(const std::string& address) {
  return isPlainLoopback(partsOf(address));
}

} // namespace tabwright::updates
