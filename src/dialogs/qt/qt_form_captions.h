// Which texts of a Qt form name a resource, and how each is set: the
// dynamic properties a host gives its widgets and actions.
#ifndef NORVIK50_SRC_DIALOGS_QT_QT_FORM_CAPTIONS_H_
#define NORVIK50_SRC_DIALOGS_QT_QT_FORM_CAPTIONS_H_

#include <QWidget>

#include "norvik50/form.h"

namespace norvik50::qt {

// Asks `lookup` for every text of `window` and the objects below it that
// names a resource, and sets each text it answers:
//  - "resId" on the window: its title; on a button, label, group box,
//    action, menu, or any object with a writable "text" (else "title")
//    property: that caption;
//  - "toolTipResId" on a widget or action: its tooltip;
//  - "headerResIds" on a tree or table view: the model's column headers,
//    one id per column (a string list, or one text with "|" between ids;
//    an empty id keeps that column's header);
//  - "tabResIds" on a tab widget: the tabs' captions, likewise.
// Returns the number of texts set.
int FillCaptions(QWidget& window, const CaptionLookup& lookup);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_QT_FORM_CAPTIONS_H_
