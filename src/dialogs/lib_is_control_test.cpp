// Which objects count as a form's controls.
#include <gtest/gtest.h>

#include "norvik50/collection.h"
#include "norvik50/form.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/text_control.h"
#include "norvik50/xml.h"

namespace norvik50 {
namespace {

TEST(IsControlTest, ControlsOfEveryKindAndNothingElse) {
  LIB lib;
  const std::pair<const char*, std::shared_ptr<HostObject>> controls[] = {
      {"text box", std::make_shared<MemoryTextBox>()},
      {"status panel", std::make_shared<MemoryStatusPanel>()},
      {"list", std::make_shared<MemoryList>()},
      {"tab strip", std::make_shared<MemoryTabStrip>()},
      {"tab frames", std::make_shared<MemoryTabFrames>()},
      {"option group", std::make_shared<MemoryOptionGroup>()},
      {"grid", std::make_shared<MemoryGrid>()},
      {"list view", std::make_shared<MemoryListView>()},
  };
  for (const auto& [what, object] : controls)
    EXPECT_TRUE(lib.tklIsControl(Variant(object))) << what;
  const std::pair<const char*, Variant> others[] = {
      {"form", Variant(std::shared_ptr<HostObject>(std::make_shared<MemoryForm>(u"frmMain")))},
      {"document", Variant(std::shared_ptr<HostObject>(std::make_shared<XmlDocument>()))},
      {"collection", Variant(std::shared_ptr<HostObject>(std::make_shared<Collection>()))},
      {"Nothing", Variant(std::shared_ptr<HostObject>())},
      {"Empty", Variant()},
      {"a control's name", Variant(u"txtName")},
      {"a number", Variant(int32_t{1})},
  };
  for (const auto& [what, value] : others) EXPECT_FALSE(lib.tklIsControl(value)) << what;
}

}  // namespace
}  // namespace norvik50
