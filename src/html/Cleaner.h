#pragma once

#include "html/AllowList.h"
#include "html/Document.h"

namespace tabwright::html {

/// Makes safe, plain documents of pages by two allow lists.
///
/// In the body an element that isn't allowed goes and its content stays in its place; attributes that aren't allowed
/// go. In the head everything goes that isn't an allowed element: text there is nothing that a reader would see.
/// The elements "html", "head" and "body" themselves are always there, without attributes.
///
///     const Document clean = Cleaner(head, body).clean(page);
class Cleaner {
public:
  /// An empty list lets nothing through: without one for the head no text of it is left.
  Cleaner(AllowList head, AllowList body) : head_(std::move(head)), body_(std::move(body)) {}

  /// `page` stays as it is, and need not outlive the result. Time and memory in proportion to the page.
  [[nodiscard]] Document clean(const Document& page) const;

private:
  AllowList head_;
  AllowList body_;
};

} // namespace tabwright::html
