// The Qt 6 dialogs: the one public header that knows Qt. A Qt host calls
// InstallQtDialogs(mainWindow) once after creating its QApplication; from
// then on every dialog member shows a real, modal Qt form owned by that
// window. A host without a Qt event loop calls InstallQtDialogs() too: the
// first dialog creates the application object, and each dialog runs
// modally inside the member's call.
//
// Two environment variables make the dialogs drivable by tests (see the
// README): NORVIK50_DIALOG_SCRIPT names a file of JSON lines, one acted
// out on each dialog that opens; NORVIK50_DIALOG_LOG names a file that
// gets one JSON line per dialog shown.
//
// Thread safety: dialogs run on the thread of the QApplication (the first
// caller's thread when the library creates it).
#ifndef NORVIK50_QT_DIALOGS_H_
#define NORVIK50_QT_DIALOGS_H_

#include <memory>
#include <string>

#include "norvik50/export.h"
#include "norvik50/form.h"
#include "norvik50/host.h"
#include "norvik50/host_controls.h"
#include "norvik50/list_view.h"
#include "norvik50/mouse_pointer.h"
#include "norvik50/picture.h"
#include "norvik50/text_control.h"

class QWidget;
class QButtonGroup;
class QKeyEvent;
class QComboBox;
class QImage;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QTabBar;
class QTabWidget;
class QTableView;
class QTextEdit;
class QTreeView;
class QTreeWidgetItem;

namespace norvik50 {

// The Qt user interface; `owner` (may be null) becomes the dialogs'
// transient parent. Never null: where no window system can be reached (see
// DisplayAvailable) it is the headless one.
NORVIK50_EXPORT std::shared_ptr<UserInterface> QtUserInterface(QWidget* owner = nullptr);

// Installs QtUserInterface(owner) for the process (SetUserInterface).
NORVIK50_EXPORT void InstallQtDialogs(QWidget* owner = nullptr);

// True when Qt can show windows: an application object exists, or one of
// the platforms Qt would try can start — the one QT_QPA_PLATFORM names
// (offscreen included) is installed, the X server of DISPLAY accepts a
// connection, the Wayland socket answers. Asked once per process; when
// false, the reason goes to stderr once. Qt itself would end the process.
NORVIK50_EXPORT bool DisplayAvailable();

// A host's own text field as a TextControl of type "TextBox", for
// tklZoomTextBox. "Locked" is the field's read-only state. The field is
// not owned; once it is destroyed, the control reads as empty and ignores
// changes.
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QLineEdit* field);
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QPlainTextEdit* field);
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QTextEdit* field);
// An editable combo box (type "ComboBox"): its edit text and selection.
// One that is not editable reads as locked, with nothing selected; a text
// set on it picks the row with that text, if there is one.
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QComboBox* combo);
// A list box (type "ListBox") stands for its current row: the row's text,
// locked when there is no current row or the row is not editable
// (Qt::ItemIsEditable), selected when the row is. Enabled state, tooltip
// and focus are the list's.
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QListWidget* list);
// A row of a list (type "ListItem") or a tree (type "Node", the text of
// `column`). An item has no caret: its text is wholly selected when the
// item is selected in its view and not at all otherwise, so Select with a
// length selects the item and with 0 clears its selection. Focus makes it
// the view's current item and gives the view the focus. Enabled and locked
// are its flags (Qt::ItemIsEnabled, no Qt::ItemIsEditable), the tooltip its
// own. The item must be in its view when it is wrapped; once it leaves the
// view or is destroyed, the control reads as empty and ignores changes.
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QListWidgetItem* item);
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QTreeWidgetItem* node, int column = 0);

// A label in the host's status bar as the status panel of tklSelectField.
NORVIK50_EXPORT std::shared_ptr<StatusPanel> QtStatusPanel(QLabel* label);

// A list box or combo box for the list-filling members and the list-box
// helpers. Each row keeps its item data under Qt::UserRole; NewIndex is the
// row where the last added text landed (a sorted list puts it in its
// place). A list row with a check box (a Qt::CheckStateRole value) is chosen
// when checked, any other when selected; a combo box's choice is its
// current row. tklSetFocus gives the widget the focus (the object is also
// a Focusable). Not owned: once the widget is destroyed, the list takes no
// rows and has none.
NORVIK50_EXPORT std::shared_ptr<ListControl> QtListControl(QListWidget* list);
NORVIK50_EXPORT std::shared_ptr<ListControl> QtListControl(QComboBox* combo);

// A tab bar or tab widget for tklXMLFillTabStrip. Each tab keeps its key
// as its QTabBar::tabData (a QString); Add raises 35602 for a key another
// tab has and 9 for an index outside 1 ... count + 1. A tab widget gets an
// empty page per added tab; Clear deletes those pages and leaves pages the
// host added to the host. tklSetFocus focuses the bar or tab widget. Not
// owned, as the lists.
NORVIK50_EXPORT std::shared_ptr<TabStrip> QtTabStrip(QTabBar* bar);
// A button group as the option group of tklGetOptionIndex: a button's
// number is the id the host gave it (addButton(button, id), id >= 0), else
// its place in the order the buttons were added. Not owned, as the lists.
NORVIK50_EXPORT std::shared_ptr<OptionGroup> QtOptionGroup(QButtonGroup* group);

// The frames of a tab strip's tabs for tklOnTabClick: the child widgets of
// `container` in the order they were made (the order of a designer form's
// file), frame i for tab i. A QStackedWidget's pages are its frames, and
// showing one makes it the current page. Not owned, as the lists; the
// frames are counted anew at each call, so a frame added later counts.
NORVIK50_EXPORT std::shared_ptr<TabFrames> QtTabFrames(QWidget* container);

// A table view or table widget as the grid of tklResizeGridCol and
// tklAlignText: widths in twips (15 a pixel), the visible width that of its
// viewport, a hidden column 0 wide. Alignment goes to every cell of the
// column and its header as Qt::TextAlignmentRole (vertically centred).
// Not owned, as the lists.
NORVIK50_EXPORT std::shared_ptr<Grid> QtGrid(QTableView* table);
NORVIK50_EXPORT std::shared_ptr<TabStrip> QtTabStrip(QTabWidget* tabs);

// A host's widget as the object of tklShowWait: its MousePointer is the
// widget's cursor (0 none of its own, 11 the wait cursor, and the other
// standard pointers 1..15 as Qt's matching shapes); a pointer without one
// (99, custom) raises 5. It is also the MouseHolder of tklCheckMouseMove
// and tklCheckMouseDown: its size is the widget's, and holding the mouse
// is QWidget::grabMouse (releaseMouse to let it go). Any widget (a button,
// a label) this way also knows its container for tklGetContainer. Once the
// widget is destroyed, it reads 0, holds nothing and ignores changes.
NORVIK50_EXPORT std::shared_ptr<MousePointerControl> QtMousePointer(QWidget* widget);

// A host's window as the Form of tklSaveWindowPos, tklLoadWindowPos and
// tklLoadFormCaptions. Its name is the object name, else the class name.
// Its bounds are in twips: left and top those of the window's frame (as
// QWidget::pos), the size the client area's with the classic frame
// (caption 18, border 4 pixels) around it, as the library's own forms
// give sizes. A maximised or minimised window answers its normal
// geometry; a placement set on a window not yet shown takes effect when
// it is shown. Its captions are named by dynamic properties: "resId" on
// the window (its title) and on its buttons, labels, group boxes, menus
// and actions (or any object with a "text" or "title" property);
// "toolTipResId" on widgets and actions; on tree and table views
// "headerResIds" and on tab widgets "tabResIds", one id per column or tab
// (a string list, or one text with "|" between the ids, "" for one that
// keeps its text). Not owned: once the window is destroyed, the form has
// no name, no captions and ignores placements.
NORVIK50_EXPORT std::shared_ptr<Form> QtForm(QWidget* window);

// A host's tree view (a QTreeWidget too) or table view as a ListView:
// its columns are the model's, numbered as the model numbers them however
// the user reordered them; headers are the model's horizontal header
// texts (a model that keeps none ignores new ones), widths those of the
// header's sections in twips (0 for a hidden column). Rows are the
// model's top-level rows: texts its display texts, checked its first
// column's check state, selected the view's selection; the sort column is
// the header's sort indicator. Rows are reordered for a QTreeWidget and a
// QStandardItemModel; another model refuses (5). The name is the object
// name, else the class name. Not owned, as the form.
NORVIK50_EXPORT std::shared_ptr<ListView> QtListView(QTreeView* view);
NORVIK50_EXPORT std::shared_ptr<ListView> QtListView(QTableView* view);

// A picture and a QImage turned into each other, pixel for pixel (a
// QImage in another format is converted to ARGB32 first). A null image
// gives the empty picture; an image larger than a Picture takes raises 5.
// A host reads and writes image files with QImage and hands the library
// the Picture.
NORVIK50_EXPORT QImage ToQImage(const Picture& picture);
NORVIK50_EXPORT Picture PictureFromQImage(const QImage& image);

// A label showing a picture as a picture box: its pixmap is what it shows,
// and drawing on it (QPainter, with the opacity as the painter's) changes
// the pixmap; a label without one gets a transparent pixmap of its size
// first. Not owned: once the label is destroyed, it shows nothing and
// cannot be drawn on.
NORVIK50_EXPORT std::shared_ptr<PictureCanvas> QtPictureBox(QLabel* label);
// A window's background as a canvas: what it shows is its background
// colour at its size now, with what was drawn on it before; drawing on it
// sets the result as the window's background picture (its palette's
// background brush, filled automatically), which stays when the window is
// repainted. Not owned, as the picture box.
NORVIK50_EXPORT std::shared_ptr<PictureCanvas> QtFormBackground(QWidget* window);
// The Windows key code of a key press (F2 is 113, "A" 65, Return 13), as
// a ported host's KeyDown handler hands it to tklCheckF2Key; 0 for a key
// that has none. `shift` (when given) receives the shift state: 1 Shift, 2
// Ctrl, 4 Alt, added up. Example, in a field's event filter:
//   int16_t shift = 0;
//   int16_t code = WindowsKeyCode(*key_event, &shift);
//   if (lib.tklCheckF2Key(QtTextControl(edit), code, shift)) return true;
NORVIK50_EXPORT int16_t WindowsKeyCode(const QKeyEvent& event, int16_t* shift = nullptr);

// Renders every dialog form in German and English to PNG files in
// `folder` (created when missing). Returns the number of files written.
NORVIK50_EXPORT int RenderDialogGallery(const std::string& folder);

}  // namespace norvik50

#endif  // NORVIK50_QT_DIALOGS_H_
