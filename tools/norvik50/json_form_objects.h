// The forms and list views of the batch protocol, for the window-position,
// column-width and caption members, as typed Object values:
//   {"vt":"Object","type":"Form","v":{"name":"frmCustomer","left":1500,
//    "top":1200,"width":9000,"height":6000,"windowState":0,
//    "caption":"Customer","resId":"1000",
//    "controls":[{"name":"cmdSave","caption":"Save","resId":"1001",
//                 "tooltip":"","tooltipResId":"1002"}],
//    "listViews":[LISTVIEW...]}}
//   {"vt":"Object","type":"ListView","v":{"name":"lvwOrders",
//    "columns":[{"header":"Name","width":1440,"headerResId":"1004"}],
//    "rows":[{"texts":["Miller","12,50"],"checked":true,"selected":false,
//             "tooltips":["","net"]}],
//    "sortColumn":1,"sortOrder":0,"style":5}}
// where a LISTVIEW is the "v" of a ListView. Every field may be left out
// ("" texts, 0 for numbers, false, no controls, list views, columns or
// rows); "windowState" is 0 normal, 1 minimised or 2 maximised; a row's
// "texts" are the item's and then its sub-items'; "sortColumn" counts
// from 1 (0: not sorted) and "sortOrder" is 0 ascending, 1 descending;
// a row's "tooltips" go with its "texts" and "style" holds the
// ListViewStyle bits of norvik50/list_view.h. Answers write the same form
// with every field, but for a "style" of 0 and a row's "tooltips" when
// all are "" (left out, so that list views without them answer as before).
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_FORM_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_FORM_OBJECTS_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "norvik50/variant.h"

namespace norvik50::cli {

// The form or list view the typed value of `type` describes; nullopt when
// `type` is neither. Raises JsonValueError for a payload that is not an
// object, a field of the wrong kind or one the object does not have.
std::optional<Variant> FormObjectFromJson(const std::string& type,
                                          const nlohmann::ordered_json& payload);
// The typed value of `object`; nullopt when it is neither.
std::optional<nlohmann::ordered_json> FormObjectToJson(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_FORM_OBJECTS_H_
