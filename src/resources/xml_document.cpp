#include <cctype>
#include <sstream>

#include "core/outside_file.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "resources/xml_impl.h"
#include "resources/xpath_cache.h"

namespace norvik50 {
namespace {

// Serialising without indentation or declaration gives "" for an empty
// document, which is what the resource document's "reload when empty" test
// looks at.
constexpr unsigned kRawFormat = pugi::format_raw | pugi::format_no_declaration;

std::u16string Serialise(const pugi::xml_node& node) {
  std::ostringstream out;
  node.print(out, "", kRawFormat);
  return FromUtf8(out.str());
}

// An 8-bit document declared as windows-1252 or iso-8859-1 is decoded
// through the code page; pugixml itself knows only Latin-1, which differs
// from Windows-1252 in 0x80..0x9F (the euro sign, typographic quotes).
bool DeclaresWindows1252(std::string_view bytes) {
  if (bytes.substr(0, 5) != "<?xml") return false;
  const auto end = bytes.find("?>");
  std::string head(bytes.substr(0, end == std::string_view::npos ? 0 : end));
  for (char& c : head) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return head.find("windows-1252") != std::string::npos ||
         head.find("iso-8859-1") != std::string::npos || head.find("latin1") != std::string::npos;
}

}  // namespace

XmlDocument::XmlDocument() : impl_(std::make_shared<Impl>()) {}
XmlDocument::~XmlDocument() = default;

bool XmlDocument::LoadXml(std::u16string_view text) {
  // Fresh content in a fresh DOM: nodes selected before keep the old one.
  auto fresh = std::make_shared<Impl>();
  const std::string utf8 = ToUtf8(text);
  const bool ok =
      fresh->dom.load_buffer(utf8.data(), utf8.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!ok) fresh->dom.reset();
  impl_ = std::move(fresh);
  return ok;
}

bool XmlDocument::Load(std::u16string_view path) {
  const auto linux_path = ToLinuxPath(path);
  const auto read = linux_path ? ReadOutsideFile(*linux_path) : std::nullopt;
  if (!read) {
    impl_ = std::make_shared<Impl>();
    return false;
  }
  const std::string& content = *read;
  if (DeclaresWindows1252(content)) return LoadXml(BytesToText(content));
  auto fresh = std::make_shared<Impl>();
  const bool ok = fresh->dom.load_buffer(content.data(), content.size());
  if (!ok) fresh->dom.reset();
  impl_ = std::move(fresh);
  return ok;
}

std::u16string XmlDocument::Xml() const { return Serialise(impl_->dom); }

bool XmlDocument::IsEmpty() const { return !impl_->dom.first_child(); }

std::shared_ptr<XmlNode> XmlDocument::SelectSingleNode(std::u16string_view xpath) const {
  const pugi::xml_node node = SelectFirst(*this, xpath);
  if (!node) return nullptr;
  return std::make_shared<XmlNode>(impl_, node.internal_object());
}

std::vector<std::shared_ptr<XmlNode>> XmlDocument::SelectNodes(std::u16string_view xpath) const {
  std::vector<std::shared_ptr<XmlNode>> nodes;
  for (const pugi::xpath_node& found : SelectAll(*this, xpath)) {
    if (found.node())
      nodes.push_back(std::make_shared<XmlNode>(impl_, found.node().internal_object()));
  }
  return nodes;
}

XmlNode::XmlNode(std::shared_ptr<const XmlDocument::Impl> document, void* node)
    : document_(std::move(document)), node_(node) {}
XmlNode::~XmlNode() = default;

std::u16string XmlNode::Attribute(std::u16string_view name) const {
  return GetXMLAttribute(DomNode(*this), name);
}

std::u16string XmlNode::Name() const { return FromUtf8(DomNode(*this).name()); }

std::u16string XmlNode::Xml() const { return Serialise(DomNode(*this)); }

pugi::xml_node SelectFirst(const XmlDocument& document, std::u16string_view xpath) {
  const auto query = CompiledXPath(xpath);
  if (!query) return {};
  try {
    return document.impl().dom.select_node(*query).node();
  } catch (const pugi::xpath_exception&) {
    return {};  // an expression that selects no nodes (a number, a text)
  }
}

pugi::xpath_node_set SelectAll(const XmlDocument& document, std::u16string_view xpath) {
  const auto query = CompiledXPath(xpath);
  if (!query) return {};
  try {
    pugi::xpath_node_set nodes = document.impl().dom.select_nodes(*query);
    nodes.sort();  // document order, whatever the expression's axis
    return nodes;
  } catch (const pugi::xpath_exception&) {
    return {};
  }
}

std::u16string GetXMLAttribute(pugi::xml_node node, std::u16string_view name) {
  if (!node) return u"";
  const pugi::xml_attribute attribute = node.attribute(ToUtf8(name).c_str());
  return attribute ? FromUtf8(attribute.value()) : u"";
}

}  // namespace norvik50
