// libFuzzer target for resource documents: any bytes loaded as a host's
// document (as Windows-1252 text and as a file's bytes) and through every
// lookup the resource members build from it, with names taken from the
// input so that quotes and brackets reach the XPath expressions.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/xml.h"
#include "resources/resource_document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace norvik50;
  static LIB* lib = new LIB;  // one object for the run, as a host has
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  // The first line (up to 40 characters) is a name to look up, the rest the document.
  const std::size_t newline = bytes.find('\n');
  const std::u16string name = BytesToText(bytes.substr(0, std::min<std::size_t>(newline, 40)));
  const std::u16string text =
      BytesToText(newline == std::string::npos ? "" : bytes.substr(newline + 1));

  auto document = std::make_shared<XmlDocument>();
  document->LoadXml(text);
  lib->tklXMLRes(document, name);
  lib->tklXMLRes(document, name, 0);
  auto list = std::make_shared<MemoryList>();
  lib->tklXMLFillList(document, list, name);
  // A quote in the name can make the numbered lookup ignore the number, so
  // every number finds an item and the fill runs to its 16-bit end: right,
  // but 32768 lookups per input would starve the search. The quote's other
  // effects are exercised by every other call here.
  std::u16string combo_name = name;
  std::erase(combo_name, u'"');
  lib->tklXMLFillComboWithResList(document, list, combo_name, u"00 ");
  auto strip = std::make_shared<MemoryTabStrip>();
  lib->tklXMLFillTabStrip(document, strip, name);
  for (const auto& node : document->SelectNodes(u"//*")) lib->tklXMLItemProp(node, name);
  document->SelectNodes(name);
  document->Xml();

  // The same bytes as the process's resource document; an empty one is
  // replaced by the built-in document at the next lookup.
  ResourceDocument().LoadXml(text);
  GetResourceItem(name, 1);
  LanguageCode(2);
  return 0;
}
