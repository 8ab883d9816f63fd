// XML documents and nodes as hosts hand them to the resource members
// (tklXMLRes, tklXMLItemProp, the list-filling members): a small value
// type over a DOM with XPath 1.0 selection. Both are HostObjects, so they
// travel in a Variant as Objects.
//
// A node keeps its document's content alive: loading new content into the
// document later leaves nodes selected earlier valid (they still read the
// old content).
//
// Thread safety: none; a document belongs to the thread that uses it.
#ifndef NORVIK50_XML_H_
#define NORVIK50_XML_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

class XmlNode;

class NORVIK50_EXPORT XmlDocument : public HostObject {
 public:
  struct Impl;  // the DOM; not part of the public interface

  XmlDocument();
  ~XmlDocument() override;

  // Replaces the content by the document in `text`. Returns false, leaving
  // the document empty, when the text is not well-formed XML.
  bool LoadXml(std::u16string_view text);
  // Replaces the content by the file at `path` (a Windows-style path through
  // the drive map, or a Linux path). A byte-order mark, or an encoding
  // declaration naming windows-1252 or iso-8859-1, decides the encoding;
  // UTF-8 otherwise. Returns false, leaving the document empty, when the
  // file cannot be read or is not well-formed.
  bool Load(std::u16string_view path);
  // The document serialised without indentation; "" for an empty document.
  std::u16string Xml() const;
  // True while the document has no content.
  bool IsEmpty() const;

  // The first node the XPath 1.0 expression selects, in document order;
  // nullptr when it selects nothing or is not a valid expression.
  std::shared_ptr<XmlNode> SelectSingleNode(std::u16string_view xpath) const;
  // Every node the expression selects, in document order; empty when it
  // selects nothing or is not a valid expression.
  std::vector<std::shared_ptr<XmlNode>> SelectNodes(std::u16string_view xpath) const;

  const Impl& impl() const { return *impl_; }

 private:
  std::shared_ptr<Impl> impl_;
};

class NORVIK50_EXPORT XmlNode : public HostObject {
 public:
  // Built by XmlDocument; `node` is the DOM node inside `document`.
  XmlNode(std::shared_ptr<const XmlDocument::Impl> document, void* node);
  ~XmlNode() override;

  // The text of the attribute `name` (case-sensitive); "" when the node has
  // no attribute of that name.
  std::u16string Attribute(std::u16string_view name) const;
  // The element's name ("item").
  std::u16string Name() const;
  // The node serialised without indentation.
  std::u16string Xml() const;

  void* handle() const noexcept { return node_; }

 private:
  std::shared_ptr<const XmlDocument::Impl> document_;
  void* node_;
};

}  // namespace norvik50

#endif  // NORVIK50_XML_H_
