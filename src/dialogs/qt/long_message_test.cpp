// Megabytes of message text through the members on the offscreen
// platform: the message box answers its scripted click at once and shows
// the text cut to what a person reads, and so does the progress window.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

#include "dialogs/qt/rich_text_reader.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"

namespace norvik50 {
namespace {

using namespace norvik50::qt::testing;
using namespace std::chrono_literals;

// Ends the test program when its scope lasts longer than `limit`. The
// fault this guards against is a call that does not come back for
// minutes, and a call busy on the GUI thread cannot be interrupted.
class Deadline {
 public:
  Deadline(std::chrono::seconds limit, std::string what)
      : watchdog_([this, limit, what = std::move(what)] {
          std::unique_lock lock(mutex_);
          if (!ended_.wait_for(lock, limit, [this] { return done_; })) {
            std::fprintf(stderr, "FAILED: %s took longer than %lld s\n", what.c_str(),
                         static_cast<long long>(limit.count()));
            std::fflush(stderr);
            std::_Exit(EXIT_FAILURE);
          }
        }) {}
  ~Deadline() {
    {
      std::lock_guard lock(mutex_);
      done_ = true;
    }
    ended_.notify_one();
    watchdog_.join();
  }
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  bool done_ = false;
  std::thread watchdog_;  // last: it uses the members above
};

// `piece` repeated to at least `size` characters.
std::u16string Repeated(std::u16string_view piece, std::size_t size) {
  std::u16string text;
  text.reserve(size + piece.size());
  while (text.size() < size) text += piece;
  return text;
}

QString Shown(std::u16string_view piece, int times) {
  return QString::fromStdU16String(std::u16string(piece)).repeated(times);
}

class LongMessageTest : public QtMembersTest {
 protected:
  LongMessageTest() : QtMembersTest("de-DE") { SetLanguage(1); }
};

// Each kind of text a host may send, a megabyte of it; the box's second
// button (Abbrechen) is clicked by the script. The bound is generous for a
// busy machine; on an idle one the box answers well within 2 s.
TEST_F(LongMessageTest, AMegabyteMessageAnswersAtOnceAndIsCut) {
  struct Case {
    std::u16string_view piece;
    QString shown;  // the text the first pieces show
  };
  const std::vector<Case> cases = {
      {u"Wort ", Shown(u"Wort ", 3)},
      {u"Zeile\\line ", Shown(u"Zeile\n", 3)},
      {u"ge\\'e4ndert ", Shown(u"geändert ", 3)},
      {u"\\b fett\\b0  normal ", Shown(u"fett normal ", 3)},
      {u"Absatz\\par ", Shown(u"Absatz\n", 3)},
  };
  std::string script;
  for (std::size_t i = 0; i < cases.size(); ++i) script += "{\"click\":2}\n";
  dialogs_.Script(script);
  for (const Case& c : cases) {
    const std::u16string prompt = Repeated(c.piece, 1'000'000);
    Deadline deadline(10s, "tklExtMsgBox with 1 MB");
    EXPECT_EQ(lib_.tklExtMsgBox(prompt, 1), 2);
  }
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const QString prompt = log[i].value("prompt").toString();
    EXPECT_EQ(prompt.size(), qt::kMaxRichTextShown + 1) << i;
    EXPECT_TRUE(prompt.startsWith(cases[i].shown)) << i;
    EXPECT_TRUE(prompt.endsWith(QChar(qt::kRichTextCutMarker))) << i;
  }
}

// A control word of a million letters is one word that nobody knows.
TEST_F(LongMessageTest, AMillionLetterControlWordIsIgnoredAtOnce) {
  dialogs_.Script("{\"click\":1}\n");
  const std::u16string prompt = u"vor \\" + std::u16string(1'000'000, u'q') + u" nach";
  {
    Deadline deadline(10s, "tklExtMsgBox with a 1M-letter control word");
    EXPECT_EQ(lib_.tklExtMsgBox(prompt), 1);
  }
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].value("prompt").toString(), "vor nach");
}

TEST_F(LongMessageTest, TenMegabytesInTheProgressWindow) {
  const std::u16string prompt = Repeated(u"Beleg {\\b 37} von 120\\par ", 10'000'000);
  {
    Deadline deadline(10s, "tklSendMessage with 10 MB");
    lib_.tklSendMessage(Variant(prompt));
  }
  lib_.tklClearMessage();
  const auto log = dialogs_.Log();
  ASSERT_FALSE(log.empty());
  const QString shown = log[0].value("prompt").toString();
  EXPECT_EQ(shown.size(), qt::kMaxRichTextShown + 1);
  EXPECT_TRUE(shown.startsWith("Beleg 37 von 120\nBeleg 37 von 120\n"));
  EXPECT_TRUE(shown.endsWith(QChar(qt::kRichTextCutMarker)));
}

}  // namespace
}  // namespace norvik50
