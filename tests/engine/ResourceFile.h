#pragma once

#include "support/SourceFolder.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tabwright::testsupport {

/// The content of a file of the checkout.
inline std::string fileText(const std::string& relativePath) {
  std::ifstream file(sourceFolder() / relativePath, std::ios::binary);
  std::ostringstream text;
  if (!file || !(text << file.rdbuf()))
    throw std::runtime_error("can't read " + relativePath);
  return text.str();
}

/// A finished text that was written down by hand.
inline std::string goldenText(const std::string& name) {
  return fileText("tests/engine/golden/" + name);
}

inline std::string replacingAll(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

} // namespace tabwright::testsupport
