// The process-wide facts a host may set: its application name and title,
// the user interface that shows dialogs, and how Windows drive letters map
// to Linux folders.
#ifndef NORVIK50_HOST_H_
#define NORVIK50_HOST_H_

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

// ---- Host application -------------------------------------------------------

// The host application's name as the log shows it: the executable's file
// name without its extension, unless the host set one.
NORVIK50_EXPORT std::u16string HostApplicationName();
// The title dialogs use when the caller gives none: NORVIK50_APP_TITLE, or
// what the host set, or the application name.
NORVIK50_EXPORT std::u16string HostApplicationTitle();
NORVIK50_EXPORT void SetHostApplication(std::u16string_view name, std::u16string_view title = u"");

// ---- Screens and windows ----------------------------------------------------------

// A rectangle in twips (15 per pixel), as the system gives sizes: for a
// window, the left and top of its outer frame and its outer size; for a
// screen, the part windows may use (without panels and task bars).
struct TwipsRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const TwipsRect&) const = default;
};

// A top-level window of any program on the desktop, as the window system
// lists it. On X11 the class is the window's WM_CLASS, whose two parts
// name the program's instance ("xterm") and its class ("XTerm").
struct TopLevelWindow {
  int64_t id = 0;  // the window system's id (an X11 window id)
  std::u16string instance;
  std::u16string class_name;
  std::u16string title;
};

// The classic window frame, which the library counts a form's sizes with
// whatever frame the window system draws (the real one is not known
// before a window is shown): a sizing border of 4 pixels on every side, a
// caption of 18 and a menu bar of 19, at 15 twips per pixel.
inline constexpr int32_t kClassicBorderTwips = 4 * 15;
inline constexpr int32_t kClassicCaptionTwips = 18 * 15;
inline constexpr int32_t kClassicMenuBarTwips = 19 * 15;

// ---- Dialog requests ------------------------------------------------------------

// One button of a message box: its name tag ("cmdOK", "cmdCancel", "yes",
// "no", "abort", "retry", "ignore", "cancel"), its caption with the "&"
// before the access letter, and the answer code it gives (1 OK ... 7 No).
struct DialogButton {
  std::u16string tag;
  std::u16string caption;
  int32_t answer = 0;
};

// Everything a message box form shows, worked out by the library from the
// member's arguments: the button set, captions in the form's language, the
// default and cancel buttons and the symbol. A user interface only lays it
// out and reports the answer, so every implementation answers alike.
struct MessageBoxRequest {
  std::u16string form;                // "frmMsgBox" (rich-text prompt) or "frmStdMsg"
  std::u16string title;               // never empty
  std::u16string prompt;              // frmMsgBox: rich-text source "{...}"
  std::u16string detail;              // frmStdMsg only
  int32_t style = 0;                  // the caller's style word
  int16_t language = 1;               // the form's language id
  int32_t symbol = 0;                 // 16, 32, 48, 64 or 0 for none
  std::vector<DialogButton> buttons;  // left to right
  int32_t default_button = 1;         // 1-based: Enter and the first focus
  int32_t cancel_button = 1;          // 1-based: Escape
  int32_t width_twips = 0;            // outer size; 0 keeps the designed size
  int32_t height_twips = 0;
  uint32_t prompt_rgb = 0;  // frmStdMsg: 0xRRGGBB
  int16_t font_size = 10;   // frmStdMsg: points
  bool font_bold = true;    // frmStdMsg
};

// Everything the input form (frmInput) shows, worked out by the library
// from the member's arguments.
struct InputRequest {
  std::u16string title;           // the caption, without a "##|" length prefix
  std::u16string prompt;          // plain text above the box
  std::u16string initial_text;    // what the box starts with
  int32_t max_length = 0;         // characters the box takes; 0 for no limit
  bool masked = false;            // every character shown as "*"
  std::u16string ok_caption;      // in the current language
  std::u16string cancel_caption;  // in the current language
  int16_t language = 0;           // the current language (also for the toolkit's texts)
};

// Everything the zoom editor (frmZoom) shows. A user interface that shows
// the window sets the size to the window's size when it closes, and
// `shown`: the library keeps that size for the next zoom.
struct ZoomRequest {
  std::u16string title;    // "Zoom" when the caller gives no description
  std::u16string text;     // the source's text
  bool enabled = true;     // false: the editor takes no input at all
  bool locked = false;     // true: read-only
  std::u16string tooltip;  // the source's tooltip
  int32_t width_twips = 0;
  int32_t height_twips = 0;
  bool shown = false;  // set by the user interface once the window was shown
};

// Everything the folder chooser (frmChoosePath) shows, worked out by the
// library from tklChoosePath's arguments and the current language.
struct ChoosePathRequest {
  std::u16string title;               // the caller's caption, else the designed one
  std::u16string start_path;          // an existing folder, Windows-style ("C:\Daten")
  std::u16string drives;              // the letters of the drive map, in order ("CZ")
  std::u16string path_label;          // "Verzeichnis:" / "Directory:"
  std::u16string ok_caption;          // "OK"
  std::u16string cancel_caption;      // "Abbrechen" / "Cancel"
  std::u16string new_folder_caption;  // "&Neuer Ordner..." / "&New Folder..."
  int16_t language = 0;               // the language the captions are in
  // The "new folder" button: asks for a name, creates the folder below
  // `parent` (the path field's text) and returns the new folder's path;
  // nullopt when the user cancelled or the folder could not be created
  // (the failure has been shown). Unset: the button does nothing.
  std::function<std::optional<std::u16string>(std::u16string_view parent)> new_folder;
};

// The flags of the file dialog that mean something on Linux (the values
// of OpenFileNameConstants).
namespace file_dialog_flags {
inline constexpr int32_t kOverwritePrompt = 2;   // save: ask before replacing a file
inline constexpr int32_t kHideReadOnly = 4;      // no "read-only" box (there never is one)
inline constexpr int32_t kNoChangeDir = 8;       // the current folder stays as it was
inline constexpr int32_t kAllowMultiSelect = 512;
inline constexpr int32_t kPathMustExist = 2048;  // the typed name's folder must exist
inline constexpr int32_t kFileMustExist = 4096;  // the file must exist (and its folder)
inline constexpr int32_t kCreatePrompt = 8192;   // ask before choosing a missing file
inline constexpr int32_t kNoReadOnlyReturn = 32768;  // a write-protected file is refused
inline constexpr int32_t kExplorer = 524288;     // several files are separated by NUL
}  // namespace file_dialog_flags

// Everything the open or save dialog shows, worked out by tklFileDialog.
struct FileDialogRequest {
  std::u16string filter;          // "Description|pattern|Description|pattern..."
  std::u16string title;           // "" for the toolkit's own "Open" / "Save As"
  std::u16string filename;        // the name the dialog starts with
  int32_t flags = 0;              // never 0: the member's defaults are filled in
  std::u16string initial_folder;  // Windows-style; "" for the current folder
  bool open = true;               // false: the save dialog
  int64_t owner_window = 0;       // the host's window id; 0 for the active window
  int16_t language = 0;           // the toolkit's texts: a language id; 0 the locale's
};

// The progress window (frmMessage) as tklSendMessage, tklHideMessage and
// tklClearMessage leave it. The library applies every rule of the members;
// a user interface only shows this state.
struct MessageWindowState {
  std::u16string title;
  std::u16string prompt;  // rich-text source "{\qc ...}"; "" until the first prompt
  bool counter_visible = false;
  int32_t counter_min = 0;
  int32_t counter_max = 100;
  int32_t counter_value = 0;
  int32_t width_twips = 6000;  // outer size
  int32_t height_twips = 1950;
  int32_t message_top_twips = 120;  // top of the message area in the client area
  bool visible = false;
  // What this call changed, so the window redraws no more than it must:
  // `showing` for a window that was not visible (the UI places it, takes
  // `owner` and `top_most`; a visible window stays where the user put it),
  // `resized` when the caller's size differs from the window's, and
  // `message_moved` when the message top differs.
  bool showing = false;
  bool resized = false;
  bool message_moved = false;
  int64_t owner = 0;  // the host's window (an X11 window id); 0: the UI's own choice
  bool top_most = true;
};

// The input form's request for the members' arguments, exactly as
// tklInputValue (masked false) and tklInputCode (masked true) build it:
// `title` "08|Word" gives at most 8 characters and the caption "Word";
// the box starts empty when `value` is Empty, Null or "", else with
// `default_text` (never with `value`); captions in `language`.
NORVIK50_EXPORT InputRequest MakeInputRequest(std::u16string_view prompt, std::u16string_view title,
                                              const Variant& value,
                                              std::u16string_view default_text, bool masked,
                                              int16_t language);

// The folder chooser's request for tklChoosePath's arguments as the
// member builds it, without the "new folder" action: `start_path` is the
// folder shown first (the caller checks that it exists), captions in
// `language` (1 German, every other English), `caption` the title when
// not empty.
NORVIK50_EXPORT ChoosePathRequest MakeChoosePathRequest(std::u16string_view start_path,
                                                        std::u16string_view caption,
                                                        int16_t language);

// The access letter of a caption, upper case: every "&&" is removed first,
// then the character after the first "&"; "" when there is none.
// AcceleratorOf(u"Q&&A &Test") is u"T".
NORVIK50_EXPORT std::u16string AcceleratorOf(std::u16string_view caption);

// Fills the buttons, their captions (in `language`), the default and cancel
// buttons and the symbol of `request` for the style word `style`, exactly as
// the message box members do; for host UIs that build a request themselves
// (a preview, a gallery) and want it to look like the members' boxes.
NORVIK50_EXPORT void FillButtons(MessageBoxRequest& request, int32_t style, int16_t language);

// ---- User interface seam ------------------------------------------------------

// Shows the library's dialogs. The default implementation is headless: it
// shows nothing, never blocks and answers as a dialog that failed (10).
// The Qt dialogs plug in here; hosts and tests may install their own.
class NORVIK50_EXPORT UserInterface {
 public:
  virtual ~UserInterface();
  // The standard message dialog: a prompt (heading), a detail text, the
  // message-box style word (buttons in the low 3 bits, 16/32/48/64 symbol)
  // and a title that is never empty. Returns the answer code (1 OK ... 7 No)
  // or 10 when the dialog could not be shown.
  // The default answers 10 (the headless answer).
  virtual int32_t ShowStandardMessage(std::u16string_view prompt, std::u16string_view detail,
                                      int32_t style, std::u16string_view title);
  // A message box form (frmMsgBox or frmStdMsg), shown modally. Returns the
  // button's answer code, 0 when the window was closed by its close box,
  // 10 when the dialog could not be shown. The default hands a frmStdMsg
  // request to ShowStandardMessage and answers 10 to anything else.
  virtual int32_t ShowMessageBox(const MessageBoxRequest& request);
  // The window system's own yes/no question (question symbol; the second
  // button the default with `default_no`), in the toolkit's texts for
  // `language` (a language id; 0 for the library locale's language).
  // Returns 6 Yes, 7 No, 10 when it could not be shown (the default).
  virtual int32_t AskYesNo(std::u16string_view question, std::u16string_view title, bool default_no,
                           int16_t language);
  // The answer box (frmAnswer) with the caller's captions, left to right.
  // An empty title keeps the designed caption. Returns the 1-based position
  // of the chosen button, 0 for Escape, the close box or a box that could
  // not be shown (the default).
  virtual int16_t GetAnswer(std::u16string_view prompt, std::u16string_view detail,
                            std::u16string_view title, const std::vector<std::u16string>& captions);
  // The input form, shown modally. Returns 1 with `text` set to the box's
  // text when confirmed; 2 (text unchanged) for Cancel, the close box or
  // a form that could not be shown (the default).
  virtual int32_t ShowInput(const InputRequest& request, std::u16string& text);
  // The zoom editor, shown modally. Returns true with `text` set to the
  // edited text after OK; false (text unchanged) after Cancel, the close
  // box or when it could not be shown (the default, which leaves the
  // request's size and `shown` alone).
  virtual bool ShowZoom(ZoomRequest& request, std::u16string& text);
  // The language chooser (frmChooseLang), shown when no language is stored
  // yet. `languages` holds "langid;name;extension" entries; returns the
  // chosen language id, or -1 when none was chosen. The default (and the
  // headless UI) chooses none, so German is taken without blocking.
  virtual int16_t ChooseLanguage(const std::vector<std::u16string>& languages);
  // The folder chooser frmChoosePath, shown modally. Returns the chosen
  // folder (Windows-style) after OK; "" after Cancel, the close box or
  // when it could not be shown (the default).
  virtual std::u16string ChoosePath(const ChoosePathRequest& request);
  // The toolkit's own folder browser, titled `title`, starting in the
  // current folder, in the toolkit's texts for `language` (as AskYesNo).
  // Returns the chosen folder (Windows-style); "" when cancelled or when it
  // could not be shown (the default).
  virtual std::u16string BrowseForFolder(std::u16string_view title, int16_t language);
  // The open (or save) file dialog. Returns true with `filename` set to the
  // chosen file (Windows-style; several files as the flags say) when one
  // was chosen; false (filename unchanged) when cancelled or not shown.
  // The default cancels.
  virtual bool ShowFileDialog(const FileDialogRequest& request, std::u16string& filename);
  // Shows the progress window in `state` (creating it when needed) or
  // hides it when `state.visible` is false. Never blocks. The default
  // shows nothing.
  virtual void UpdateMessageWindow(const MessageWindowState& state);
  // Destroys the progress window; nothing when there is none (the default).
  virtual void UnloadMessageWindow();
  // The progress window's outer size now, in twips (the user may have
  // resized it); false when there is no window (the default).
  virtual bool MessageWindowSize(int32_t& width_twips, int32_t& height_twips);
  // Processes the window events that are pending and returns; the default
  // (headless) has none.
  virtual void ProcessEvents();
  // The usable area of every screen of the desktop as it is now, in
  // twips, the primary screen first. Empty when the screens are not known
  // (the default): then a stored window position is taken as it is.
  virtual std::vector<TwipsRect> ScreenRects();
  // The whole primary screen, panels included, in twips; all zero when no
  // screen is known (the default).
  virtual TwipsRect PrimaryScreen();
  // The height of a form's menu bar in the toolkit's style, in twips. The
  // default answers the classic 19 pixels, the height the library counts
  // when there is no toolkit to measure.
  virtual int32_t MenuBarHeight();
  // Keeps every window the application shows now above the windows of
  // other applications (`top_most` false: releases them). Returns how many
  // windows it changed; the default has none (0).
  virtual int32_t SetApplicationTopMost(bool top_most);
  // Whether the key or mouse button with the Windows virtual-key code
  // `virtual_key` (1 ... 254: 1 the left mouse button, 0x41 "A", 0x70 F1)
  // is held down now, as the application's windows saw it. The default
  // has no keyboard: false.
  virtual bool IsKeyDown(int32_t virtual_key);
  // The font families a form may use, in the toolkit's order; the default
  // knows none.
  virtual std::vector<std::u16string> FontFamilies();
  // The top-level windows of every program on the desktop now, the
  // top-most first; nullopt when the window system does not let one
  // program see the windows of others (the default, Wayland, offscreen).
  virtual std::optional<std::vector<TopLevelWindow>> TopLevelWindows();
  // Keeps the pointer inside `area` (screen coordinates, in twips, moving
  // it there first) until it is called again; nullopt releases it. False
  // when the pointer cannot be confined here (the default: no pointer,
  // though releasing it succeeds).
  virtual bool ConfinePointer(const std::optional<TwipsRect>& area);
  // The names of the application's forms that are open now: its top-level
  // windows and dialogs that are shown, minimised ones too, each named as
  // QtForm names a window (its object name, else its class name). A window
  // that was closed is not open, even where the toolkit only hid it. The
  // default knows none.
  virtual std::vector<std::u16string> OpenForms();
};

// The headless implementation (the default).
NORVIK50_EXPORT std::shared_ptr<UserInterface> HeadlessUserInterface();
NORVIK50_EXPORT UserInterface& CurrentUserInterface();
// Installs `ui` for the process; nullptr restores the headless one.
NORVIK50_EXPORT void SetUserInterface(std::shared_ptr<UserInterface> ui);

// ---- Drives -----------------------------------------------------------------

// Windows paths reach the Linux file system through drive roots. Z: is "/"
// unless changed; other letters come from NORVIK50_DRIVES
// ("C=/srv/app/c;D=/mnt/data") or from SetDriveRoot. A letter without a root
// cannot be reached: file tests on it answer "missing".
NORVIK50_EXPORT void SetDriveRoot(char16_t letter, std::string root);
// Removes the mapping of `letter`.
NORVIK50_EXPORT void ClearDriveRoot(char16_t letter);
// The current map, letter (upper case) -> Linux folder.
NORVIK50_EXPORT std::map<char16_t, std::string> DriveRoots();

// The Linux path for a Windows-style path: "X:\a\b" -> root(X) + "/a/b";
// "\a" -> the current folder's drive root + "/a"; "a\b" (relative) -> "a/b";
// an absolute POSIX path ("/etc/x") passes unchanged. Below the drive root
// (or the current folder), the path is found as Windows finds it whatever
// the case it is written in: the exact spelling when it exists, else each
// component matched against the folder's entries without regard to case
// ("C:\PROG\RES_DE.DLL" -> root(C) + "/Prog/Res_DE.dll"); the exact name
// wins over names that differ only in case. A name that does not exist
// keeps its spelling under the folder found, so a file created there gets
// the name the caller gave. Below the drive, "." and ".." are read from the
// text and never climb above the root ("C:\..\x" is root(C) + "/x"),
// repeated separators count once, a name's single trailing dot and the last
// name's trailing dots and spaces are dropped, as Windows does; a relative
// path is left to the file system. nullopt for an unmapped drive, a UNC
// path, an empty path and a path with a NUL character: none of them names
// a file.
NORVIK50_EXPORT std::optional<std::string> ToLinuxPath(std::u16string_view windows_path);
// The inverse for absolute Linux paths: the drive whose root is the longest
// prefix of `linux_path` ("/tmp" -> "Z:\tmp"). A relative path is taken
// from the current folder first. nullopt when no drive covers it.
NORVIK50_EXPORT std::optional<std::u16string> ToWindowsPath(std::string_view linux_path);
// The current folder as a Windows-style path ("Z:\home\me").
NORVIK50_EXPORT std::u16string CurrentFolder();

}  // namespace norvik50

#endif  // NORVIK50_HOST_H_
