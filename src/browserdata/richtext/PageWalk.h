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

  void add(html::Node node);

  [[nodiscard]] BodyWriter& body() { return body_; }
  [[nodiscard]] const ListTable& lists() const { return lists_; }

private:
  struct Context;
  struct ListState;

  void visit(html::Node node, const Context& context);
  void visitChildren(html::Node element, const Context& context);
  void visitBlock(html::Node element, const TagEffect& effect, Context context);
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
