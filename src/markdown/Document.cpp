// The parser is cmark-gfm. Its tree is walked by its iterator, not by recursion, and copied into nodes of our own; a
// node is added to its parent when it is left. `kept_` tells for each node that is open whether it is in our tree. Our
// own tree is plain data, so that it outlives the parser, can be shared by threads, and is never deeper than it may be.
#include "markdown/Document.h"

#include "markdown/MarkdownError.h"
#include "markdown/MarkupLimits.h"

#include <algorithm>
#include <array>
#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>
#include <cstdint>
#include <memory>
#include <string>

namespace tabwright::markdown {
namespace {

using Kind = Node::Kind;

struct Release {
  void operator()(cmark_parser* parser) const { cmark_parser_free(parser); }
  void operator()(cmark_node* node) const { cmark_node_free(node); }
  void operator()(cmark_iter* iterator) const { cmark_iter_free(iterator); }
};

// Registering isn't safe in threads; the initialisation of a local static is.
void registerExtensions() {
  static const bool isRegistered = (cmark_gfm_core_extensions_ensure_registered(), true);
  static_cast<void>(isRegistered);
}

std::unique_ptr<cmark_node, Release> parsed(const std::string& text) {
  registerExtensions();
  const std::unique_ptr<cmark_parser, Release> parser(cmark_parser_new(CMARK_OPT_VALIDATE_UTF8));
  for (const char* name : {"table", "strikethrough", "tasklist", "autolink"})
    cmark_parser_attach_syntax_extension(parser.get(), cmark_find_syntax_extension(name));
  cmark_parser_feed(parser.get(), text.data(), text.size());
  return std::unique_ptr<cmark_node, Release>(cmark_parser_finish(parser.get()));
}

// Nodes of extensions have types that are made at run time, but fixed names.
Kind kindOf(cmark_node* node) {
  struct Row {
    std::string_view name;
    Kind kind;
  };
  static constexpr std::array rows{
      Row{"document", Kind::document},
      Row{"heading", Kind::heading},
      Row{"paragraph", Kind::paragraph},
      Row{"block_quote", Kind::blockQuote},
      Row{"list", Kind::list},
      Row{"item", Kind::item},
      Row{"tasklist", Kind::taskItem},
      Row{"code_block", Kind::codeBlock},
      Row{"html_block", Kind::htmlBlock},
      Row{"thematic_break", Kind::thematicBreak},
      Row{"table", Kind::table},
      Row{"table_header", Kind::row},
      Row{"table_row", Kind::row},
      Row{"table_cell", Kind::cell},
      Row{"text", Kind::text},
      Row{"code", Kind::code},
      Row{"html_inline", Kind::html},
      Row{"emph", Kind::emphasis},
      Row{"strong", Kind::strong},
      Row{"strikethrough", Kind::strikethrough},
      Row{"link", Kind::link},
      Row{"image", Kind::image},
      Row{"softbreak", Kind::softBreak},
      Row{"linebreak", Kind::hardBreak},
  };
  const std::string_view name = cmark_node_get_type_string(node);
  for (const Row& row : rows)
    if (row.name == name)
      return row.kind;
  return Kind::paragraph; // no other kind is made with these options
}

std::string textOf(const char* text) {
  return !text ? std::string() : withoutMarks(text);
}

// A letter for each column; any other for a column that says nothing.
std::vector<Node::Alignment> alignmentsOf(cmark_node* table) {
  const std::uint8_t* letters = cmark_gfm_extensions_get_table_alignments(table);
  std::vector<Node::Alignment> alignments(cmark_gfm_extensions_get_table_columns(table));
  for (std::size_t column = 0; column < alignments.size(); ++column)
    alignments[column] = letters[column] == 'l'   ? Node::Alignment::left
                         : letters[column] == 'c' ? Node::Alignment::centre
                         : letters[column] == 'r' ? Node::Alignment::right
                                                  : Node::Alignment::none;
  return alignments;
}

// The members of its kind alone. The parser has resolved entities and escapes already.
Node copyOf(cmark_node* source) {
  Node node;
  node.kind = kindOf(source);
  switch (node.kind) {
  case Kind::heading:
    node.level = cmark_node_get_heading_level(source);
    break;
  case Kind::list:
    node.isOrdered = cmark_node_get_list_type(source) == CMARK_ORDERED_LIST;
    node.start = node.isOrdered ? cmark_node_get_list_start(source) : 0;
    node.isTight = cmark_node_get_list_tight(source) != 0;
    break;
  case Kind::taskItem:
    node.isChecked = cmark_gfm_extensions_get_tasklist_item_checked(source);
    break;
  case Kind::codeBlock:
    node.language = textOf(cmark_node_get_fence_info(source));
    // The rest of the fence's line is free text by CommonMark, which gives only its first word a meaning.
    node.language.erase(std::min(node.language.find_first_of(" \t"), node.language.size()));
    node.text = textOf(cmark_node_get_literal(source));
    break;
  case Kind::table:
    node.alignments = alignmentsOf(source);
    break;
  case Kind::row:
    node.isHeader = cmark_gfm_extensions_get_table_row_is_header(source) != 0;
    break;
  case Kind::text:
  case Kind::code:
  case Kind::html:
  case Kind::htmlBlock:
    node.text = textOf(cmark_node_get_literal(source));
    break;
  case Kind::link:
  case Kind::image:
    node.address = textOf(cmark_node_get_url(source));
    node.title = textOf(cmark_node_get_title(source));
    break;
  default:
    break;
  }
  return node;
}

// Kinds without children, whose whole content is their text.
bool isLeaf(Kind kind) {
  switch (kind) {
  case Kind::codeBlock:
  case Kind::htmlBlock:
  case Kind::thematicBreak:
  case Kind::text:
  case Kind::code:
  case Kind::html:
  case Kind::softBreak:
  case Kind::hardBreak:
    return true;
  default:
    return false;
  }
}

// The kinds that a text can nest without end; all others stand in these at fixed depths.
bool nestsInItself(Kind kind) {
  switch (kind) {
  case Kind::blockQuote:
  case Kind::list:
  case Kind::emphasis:
  case Kind::strong:
  case Kind::strikethrough:
  case Kind::link:
  case Kind::image:
    return true;
  default:
    return false;
  }
}

class TreeBuilder {
public:
  void enter(cmark_node* source) {
    Node node = copyOf(source);
    if (isLeaf(node.kind)) {
      add(std::move(node));
      return;
    }
    const bool isItem = node.kind == Kind::item || node.kind == Kind::taskItem;
    // Items go with their list: one without a list around it could not be shown.
    const bool isTooDeep = (nestsInItself(node.kind) && open_.size() >= deepestNesting) || (isItem && !kept_.back());
    kept_.push_back(!isTooDeep);
    if (!isTooDeep)
      open_.push_back(std::move(node));
  }

  void leave(cmark_node* source) {
    if (isLeaf(kindOf(source)))
      return;
    const bool isKept = kept_.back();
    kept_.pop_back();
    // The document itself stays open, as it has no parent to be added to.
    if (!isKept || kept_.empty())
      return;
    Node node = std::move(open_.back());
    open_.pop_back();
    add(std::move(node));
  }

  // The document, which is the only node still open at the end.
  Node finished() { return std::move(open_.front()); }

private:
  void add(Node node) {
    if (node.kind == Kind::text && node.text.empty())
      return; // what an autolink has left of its text
    std::vector<Node>& siblings = open_.back().children;
    if (node.kind == Kind::text && !siblings.empty() && siblings.back().kind == Kind::text)
      siblings.back().text += node.text; // the parser leaves a text in pieces where markup could have been
    else
      siblings.push_back(std::move(node));
  }

  std::vector<Node> open_;
  std::vector<bool> kept_;
};

} // namespace

Document parse(std::string_view text) {
  if (text.size() > longestText)
    throw platform::failure(MarkdownError::textTooLong,
                            std::to_string(text.size()) + " bytes, of at most " + std::to_string(longestText));
  const std::unique_ptr<cmark_node, Release> root = parsed(bounded(text));
  const std::unique_ptr<cmark_iter, Release> iterator(cmark_iter_new(root.get()));
  TreeBuilder builder;
  while (true) {
    const cmark_event_type event = cmark_iter_next(iterator.get());
    if (event == CMARK_EVENT_DONE)
      break;
    if (event == CMARK_EVENT_ENTER)
      builder.enter(cmark_iter_get_node(iterator.get()));
    else
      builder.leave(cmark_iter_get_node(iterator.get()));
  }
  return Document(builder.finished());
}

} // namespace tabwright::markdown
