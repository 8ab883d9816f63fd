// A Qt host built against the installed package only: it installs the Qt
// dialogs and shows one message box, which the dialog script answers.
// Prints the box's answer; exits 1 when the dialogs did not show.
#include <norvik50/lib.h>
#include <norvik50/qt_dialogs.h>
#include <norvik50/registry.h>

#include <QApplication>
#include <iostream>

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  norvik50::InstallQtDialogs();
  norvik50::LIB lib;
  // A stored language keeps the chooser from taking the script's line.
  lib.tkrSetValue(norvik50::HKEY_CURRENT_USER, lib.tklRegKey(), u"Language",
                  norvik50::Variant(int32_t{2}));
  // Yes/No/Cancel: a headless library would answer 10 without a box.
  const int32_t answer = lib.tklMsgBox(u"Save the changes?", u"The invoice was changed.", 3);
  std::cout << answer << '\n';
  return answer == 10 ? 1 : 0;
}
