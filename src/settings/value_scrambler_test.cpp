// Encrypted texts: every UTF-16 text comes back exactly, through the
// registry as hosts keep them, and nothing changed or foreign is ever
// decrypted to a text.
#include "settings/value_scrambler.h"

#include <gtest/gtest.h>
#include <sodium.h>
#include <sys/stat.h>

#include <random>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/registry.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using norvik50::testing::ErrorOf;

// A key of fresh random bytes.
void RandomKey(ValueKey& key) {
  StartCrypto();
  randombytes_buf(key.data(), kValueKeyBytes);
}

// A text of `length` UTF-16 units of every kind: ASCII, Latin, CJK, and
// surrogates that may or may not pair up.
std::u16string RandomText(std::mt19937& rng, std::size_t length) {
  std::uniform_int_distribution<int> kind(0, 4);
  std::u16string text;
  for (std::size_t i = 0; i < length; ++i) {
    switch (kind(rng)) {
      case 0:
        text.push_back(static_cast<char16_t>(rng() % 0x80));
        break;
      case 1:
        text.push_back(static_cast<char16_t>(0x80 + rng() % 0x780));
        break;
      case 2:
        text.push_back(static_cast<char16_t>(0xD800 + rng() % 0x800));
        break;
      default:
        text.push_back(static_cast<char16_t>(rng() % 0x10000));
        break;
    }
  }
  return text;
}

std::string Hex(std::u16string_view text) {
  std::string hex;
  char unit[6];
  for (const char16_t c : text) {
    std::snprintf(unit, sizeof unit, "%04X ", static_cast<unsigned>(c));
    hex += unit;
  }
  return hex;
}

const std::u16string kEdgeTexts[] = {
    u"",
    u"geheim",
    u"Passw\u00F6rter \u20AC",
    std::u16string(1, u'\0') + u"mid" + std::u16string(1, u'\0'),  // NULs are units too
    u"\U0001F511",                                                 // a surrogate pair
    u"\xD800",                                                     // a lone high surrogate
    u"a\xDC00z",                                                   // a lone low surrogate
    u"\xDC00\xD800",                                               // a pair the wrong way round
    u"\xFFFF\xFFFE\x0001",
    std::u16string(kMaxScrambledTextUnits, u'\xD83D'),  // the longest, all unpaired
};

TEST(ValueScramblerTest, EveryTextComesBackExactly) {
  ValueKey key;
  RandomKey(key);
  std::mt19937 rng(19);
  std::vector<std::u16string> texts(std::begin(kEdgeTexts), std::end(kEdgeTexts));
  for (int i = 0; i < 300; ++i)
    texts.push_back(RandomText(rng, rng() % (kMaxScrambledTextUnits + 1)));
  for (const std::u16string& text : texts) {
    const std::u16string scrambled = ScrambleText(text, key);
    // Printable ASCII after the version prefix, short enough for the
    // registry getters' buffer.
    ASSERT_TRUE(scrambled.starts_with(kScrambledPrefix));
    EXPECT_LE(scrambled.size(), 1023u);
    for (const char16_t c : scrambled) ASSERT_TRUE(c > 0x20 && c < 0x7F) << Hex(scrambled);
    EXPECT_EQ(UnscrambleText(scrambled, key), text) << Hex(text);
  }
}

TEST(ValueScramblerTest, TheSameTextEncryptsDifferentlyEachTime) {
  // A fresh nonce per call: two hosts storing the same password do not
  // show that they share it.
  ValueKey key;
  RandomKey(key);
  const std::u16string first = ScrambleText(u"sa-password", key);
  const std::u16string second = ScrambleText(u"sa-password", key);
  EXPECT_NE(first, second);
  EXPECT_EQ(UnscrambleText(second, key), u"sa-password");
}

TEST(ValueScramblerTest, TheLongestTextIsTheLastThatFitsTheRegistryBuffer) {
  ValueKey key;
  RandomKey(key);
  EXPECT_EQ(ErrorOf([&] { ScrambleText(std::u16string(kMaxScrambledTextUnits + 1, u'x'), key); }),
            kErrInvalidCall);
  EXPECT_EQ(ScrambleText(std::u16string(kMaxScrambledTextUnits, u'x'), key).size(), 1021u);
}

TEST(ValueScramblerTest, EveryChangedCharacterIsRefused) {
  ValueKey key;
  RandomKey(key);
  const std::u16string scrambled = ScrambleText(u"Datenbank-Kennwort \xD801", key);
  // Each character replaced by each of a few others: base64 letters,
  // padding, a blank and a non-ASCII unit.
  const std::u16string replacements = u"AaZz09+/=: \u00E9";
  int tried = 0;
  for (std::size_t i = 0; i < scrambled.size(); ++i) {
    for (const char16_t r : replacements) {
      if (r == scrambled[i]) continue;
      std::u16string changed = scrambled;
      changed[i] = r;
      ++tried;
      EXPECT_EQ(ErrorOf([&] { UnscrambleText(changed, key); }), kErrInvalidCall)
          << "position " << i << " -> " << static_cast<char>(r);
    }
  }
  EXPECT_GT(tried, 500);
  // Cut short at every length, or lengthened.
  for (std::size_t n = 0; n < scrambled.size(); ++n) {
    EXPECT_EQ(ErrorOf([&] { UnscrambleText(scrambled.substr(0, n), key); }), kErrInvalidCall) << n;
  }
  for (const std::u16string tail : {u"=", u"A", u"AAAA", u" ", u"\n"}) {
    EXPECT_EQ(ErrorOf([&] { UnscrambleText(scrambled + tail, key); }), kErrInvalidCall);
  }
}

TEST(ValueScramblerTest, EveryFlippedBitIsRefused) {
  // Below the text: each bit of the nonce, the tag and the sealed units,
  // re-encoded as valid base64, so only the authentication can catch it.
  ValueKey key;
  RandomKey(key);
  const std::vector<unsigned char> sealed = ReadScrambled(ScrambleText(u"K\u00F6ln", key));
  for (std::size_t byte = 0; byte < sealed.size(); ++byte) {
    for (int bit = 0; bit < 8; ++bit) {
      std::vector<unsigned char> flipped = sealed;
      flipped[byte] ^= static_cast<unsigned char>(1 << bit);
      EXPECT_EQ(ErrorOf([&] { OpenScrambled(flipped, key); }), kErrInvalidCall)
          << byte << "/" << bit;
    }
  }
  EXPECT_EQ(OpenScrambled(sealed, key), u"K\u00F6ln");
}

TEST(ValueScramblerTest, ForeignTextsAreRefused) {
  ValueKey key;
  RandomKey(key);
  ValueKey other;
  RandomKey(other);
  const std::u16string good = ScrambleText(u"pw", key);
  const std::u16string body = good.substr(kScrambledPrefix.size());
  const std::u16string foreign[] = {
      u"",
      u"pw",            // a value stored before it was encrypted
      u"nvk1:",         // the prefix alone
      u"nvk1:AAAA",     // valid base64, too short for a nonce
      u"NVK1:" + body,  // the prefix is exact
      u"nvk2:" + body,  // a form this version does not know
      u" " + good,      // nothing before it
      u"nvk1:" + body.substr(0, 8) + u"\n" + body.substr(8),  // no line breaks inside
      ScrambleText(u"pw", other),                             // another user's key
  };
  for (const std::u16string& text : foreign) {
    EXPECT_EQ(ErrorOf([&] { UnscrambleText(text, key); }), kErrInvalidCall) << ToUtf8(text);
  }
  // The description says what happened, not only that it failed.
  try {
    UnscrambleText(ScrambleText(u"pw", other), key);
    ADD_FAILURE() << "decrypted with the wrong key";
  } catch (const Error& e) {
    EXPECT_NE(ToUtf8(e.description()).find("another key"), std::string::npos);
  }
}

// The way hosts use it: encrypt, store, read back, decrypt, all by the
// members, on a real store and key file in a temporary folder.
class ScrambledRegistryValueTest : public ::testing::Test {
 protected:
  norvik50::testing::TempFolder temp_;
  norvik50::testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  norvik50::testing::ScopedEnv store_dir_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  LIB lib_;
};

TEST_F(ScrambledRegistryValueTest, RoundTripsThroughTheRegistry) {
  constexpr std::u16string_view kKey = u"Software\\Norvik\\Db";
  std::mt19937 rng(50);
  std::vector<std::u16string> texts(std::begin(kEdgeTexts), std::end(kEdgeTexts));
  for (int i = 0; i < 60; ++i)
    texts.push_back(RandomText(rng, rng() % (kMaxScrambledTextUnits + 1)));
  for (const std::u16string& text : texts) {
    const std::u16string scrambled = lib_.tklEncryptedValue(text);
    ASSERT_TRUE(lib_.tkrSetValue(HKEY_CURRENT_USER, kKey, u"Password", Variant(scrambled)));
    const std::u16string stored = lib_.tkrGetString(HKEY_CURRENT_USER, kKey, u"Password", u"?");
    ASSERT_EQ(stored, scrambled);
    EXPECT_EQ(lib_.tklDecryptedValue(stored), text) << Hex(text);
  }
  // The key was made once, beside the store, and is the user's alone.
  struct stat st {};
  ASSERT_EQ(::stat(temp_.File("reg/HKEY_CURRENT_USER.key").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_EQ(st.st_size, 32);
}

TEST_F(ScrambledRegistryValueTest, DecryptingNeverMakesAKey) {
  const std::u16string scrambled = lib_.tklEncryptedValue(u"x");
  // The user's settings moved without the key file.
  ASSERT_EQ(std::remove(temp_.File("reg/HKEY_CURRENT_USER.key").c_str()), 0);
  EXPECT_EQ(ErrorOf([&] { lib_.tklDecryptedValue(scrambled); }), kErrFileNotFound);
  struct stat st {};
  EXPECT_NE(::stat(temp_.File("reg/HKEY_CURRENT_USER.key").c_str(), &st), 0);
  // A text that was never encrypted says so, key or no key.
  EXPECT_EQ(ErrorOf([&] { lib_.tklDecryptedValue(u"plain old password"); }), kErrInvalidCall);
  // A key made since cannot read what the old one sealed.
  lib_.tklEncryptedValue(u"y");
  EXPECT_EQ(ErrorOf([&] { lib_.tklDecryptedValue(scrambled); }), kErrInvalidCall);
}

}  // namespace
}  // namespace norvik50::settings
