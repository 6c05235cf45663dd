// compact_javascript INPUT OUTPUT: joins a JavaScript file into one line without comments, for embedding.
//
// The text is cut into tokens: literals are copied as they stand, comments and white space between tokens go, and one
// blank stays where two tokens would grow together. It doesn't know the grammar, so the input keeps to a style: every
// statement ends in a semicolon or brace, no literal goes over a line's end, and there are no regular expressions. What
// breaks the latter two is refused; the engine's tests parse the outcome.
#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

bool isWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool growTogether(char left, char right) {
  return (isWordCharacter(left) && isWordCharacter(right)) || (left == right && (left == '+' || left == '-')) ||
         (left == '/' && (right == '/' || right == '*')) || (isWordCharacter(left) && right == '.' && left <= '9');
}

class Compactor {
public:
  explicit Compactor(std::string_view text) : text_(text) {}

  std::string compact() {
    for (bool isSeparated = skipBlanksAndComments(); at_ < text_.size(); isSeparated = skipBlanksAndComments())
      append(nextToken(), isSeparated);
    return output_;
  }

private:
  // True when there were any.
  bool skipBlanksAndComments() {
    const std::size_t start = at_;
    while (at_ < text_.size()) {
      const std::string_view rest = text_.substr(at_);
      if (rest.starts_with("//"))
        at_ = std::min(text_.find('\n', at_), text_.size());
      else if (rest.starts_with("/*"))
        at_ = require(text_.find("*/", at_ + 2), "a comment without end") + 2;
      else if (std::string_view(" \t\r\n").find(rest.front()) != std::string_view::npos)
        ++at_;
      else
        break;
    }
    return at_ > start;
  }

  std::string_view nextToken() {
    const std::size_t start = at_;
    const char first = text_[at_];
    if (first == '"' || first == '\'' || first == '`') {
      skipLiteral(first);
    } else if (isWordCharacter(first)) {
      while (at_ < text_.size() && isWordCharacter(text_[at_]))
        ++at_;
    } else {
      if (first == '/' && !output_.empty() && !isWordCharacter(output_.back()) && output_.back() != ')' &&
          output_.back() != ']')
        fail("a regular expression");
      ++at_;
    }
    return text_.substr(start, at_ - start);
  }

  // A template is copied with its substitutions, whatever these hold besides another template.
  void skipLiteral(char quote) {
    for (++at_; at_ < text_.size() && text_[at_] != quote; ++at_) {
      if (text_[at_] == '\n')
        fail("a literal that goes over a line's end");
      if (text_[at_] == '\\')
        ++at_;
    }
    if (at_ >= text_.size())
      fail("a literal without end");
    ++at_;
  }

  void append(std::string_view token, bool isSeparated) {
    // A comma in front of a closing bracket is a matter of the source's style only.
    if ((token == ")" || token == "]" || token == "}") && output_.ends_with(','))
      output_.pop_back();
    if (isSeparated && !output_.empty() && growTogether(output_.back(), token.front()))
      output_ += ' ';
    output_ += token;
  }

  std::size_t require(std::size_t position, const char* what) const {
    if (position == std::string_view::npos)
      fail(what);
    return position;
  }

  [[noreturn]] void fail(const char* what) const {
    std::size_t line = 1;
    for (const char c : text_.substr(0, at_))
      line += c == '\n' ? 1 : 0;
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string output_;
};

} // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: compact_javascript INPUT OUTPUT\n";
    return 2;
  }
  try {
    std::ifstream input(arguments[1], std::ios::binary);
    std::ostringstream text;
    if (!input || !(text << input.rdbuf()))
      throw std::runtime_error("can't be read");
    const std::string source = text.str();
    const std::string compacted = Compactor(source).compact();
    std::ofstream output(arguments[2], std::ios::binary | std::ios::trunc);
    if (!(output << compacted << std::flush))
      throw std::runtime_error(std::string("can't write ") + arguments[2]);
  } catch (const std::exception& error) {
    std::cerr << arguments[1] << ": " << error.what() << '\n';
    return 1;
  }
  return 0;
}
