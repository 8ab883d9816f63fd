// Each member family contributes its entries to the dispatch table through
// one registration function, defined in its own layer; the table of all
// members (src/member_table.cpp) calls them in order.
#ifndef NORVIK50_SRC_CORE_MEMBER_REGISTRY_H_
#define NORVIK50_SRC_CORE_MEMBER_REGISTRY_H_

#include "norvik50/dispatch.h"

namespace norvik50 {

void RegisterCoreMembers(MemberTable& table);      // src/core/core_members.cpp
void RegisterTextMembers(MemberTable& table);      // src/text/text_members.cpp
void RegisterCodecMembers(MemberTable& table);     // src/codecs/codec_members.cpp
void RegisterNumericMembers(MemberTable& table);   // src/numeric/numeric_members.cpp
void RegisterSettingsMembers(MemberTable& table);  // src/settings/settings_members.cpp
void RegisterResourceMembers(MemberTable& table);  // src/resources/resource_members.cpp
void RegisterDialogMembers(MemberTable& table);    // src/dialogs/dialog_members.cpp
void RegisterWindowMembers(MemberTable& table);    // src/dialogs/window_members.cpp
void RegisterListBoxMembers(MemberTable& table);   // src/dialogs/list_box_members.cpp
void RegisterPictureMembers(MemberTable& table);   // src/dialogs/picture_members.cpp
void RegisterFormFieldMembers(MemberTable& table);  // src/dialogs/form_field_members.cpp

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_MEMBER_REGISTRY_H_
