#pragma once

#include "browserdata/richtext/BodyWriter.h"
#include "browserdata/richtext/ListTable.h"
#include "browserdata/richtext/TagEffects.h"
#include "html/Node.h"

#include <string>

namespace tabwright::browserdata {

/// Walks a page and writes what a browser would show of it.
///
///     PageWalk walk;
///     walk.add(page.root());
///     walk.body().finish();       // the text; walk.lists() has the lists that it refers to
///
/// Uses the stack in proportion to the depth of the page, which `html::Document` bounds.
class PageWalk {
public:
  /// Tables within tables; in deeper ones each cell is a block.
  static constexpr int maximumTableDepth = 5;

  /// Writes a node and all in it behind what was added before.
  void add(html::Node node);

  /// The text so far, to be finished by the caller.
  [[nodiscard]] BodyWriter& body() { return body_; }
  /// The lists that the text refers to: whole when all nodes were added.
  [[nodiscard]] const ListTable& lists() const { return lists_; }

private:
  /// The surroundings of a node, as the elements around it have set them; copied on the way down.
  struct Context;
  struct ListState;

  void visit(html::Node node, const Context& context);
  void visitChildren(html::Node element, const Context& context);
  /// Elements that end the paragraph before them; the roles with rules of their own go on to those.
  void visitBlock(html::Node element, const TagEffect& effect, Context context);
  /// Elements within a paragraph.
  void visitFlowing(html::Node element, const TagEffect& effect, Context context);
  void visitList(html::Node element, const TagEffect& effect, Context context);
  void visitItem(html::Node element, Context context);
  void visitTable(html::Node element, Context context);
  void visitQuotation(html::Node element, Context context);
  void visitLink(html::Node element, Context context);

  BodyWriter body_;
  ListTable lists_;
};

} // namespace tabwright::browserdata
