// The DOM behind the public XmlDocument and XmlNode, for the resource
// layer's own code. Nothing outside src/ sees a pugixml type.
#ifndef NORVIK50_SRC_RESOURCES_XML_IMPL_H_
#define NORVIK50_SRC_RESOURCES_XML_IMPL_H_

#include <pugixml.hpp>

#include <string>
#include <string_view>

#include "norvik50/xml.h"

namespace norvik50 {

struct XmlDocument::Impl {
  pugi::xml_document dom;
};

inline pugi::xml_node DomNode(const XmlNode& node) {
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(node.handle()));
}

// The first node `xpath` selects in `document`; an empty node when none is
// selected or the expression is not valid XPath (a name with a double quote
// in it breaks the expressions the members build; that must read as "no
// node", never as a failure).
pugi::xml_node SelectFirst(const XmlDocument& document, std::u16string_view xpath);
// Every node `xpath` selects, in document order; empty on a broken
// expression.
pugi::xpath_node_set SelectAll(const XmlDocument& document, std::u16string_view xpath);

// GetXMLAttribute: the attribute's text, "" for an empty node or a missing
// attribute.
std::u16string GetXMLAttribute(pugi::xml_node node, std::u16string_view name);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_XML_IMPL_H_
