// norvik50 lzw deflate|inflate [IN [OUT]]: the LZW codec on files, byte for
// byte. IN and OUT default to stdin and stdout ("-" names them too).
// Exit codes: 0 done, 1 the codec refused the data (an empty input to
// deflate, a damaged stream to inflate, a result too large for memory),
// 2 a file could not be read or written, or the command line named no such
// mode. OUT is only opened once the result is complete, so a failure never
// leaves a half-written or emptied file behind.
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>
#include <string>

#include "codecs/lzw.h"
#include "commands.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::cli {
namespace {

constexpr int kDataError = 1;
constexpr int kFileError = 2;
// A command line it cannot run shares 2 with a file it cannot use: either
// way nothing was attempted on the data.
constexpr int kUsageError = 2;

bool IsStdStream(const std::string& path) { return path.empty() || path == "-"; }

std::string Describe(const std::string& path) {
  return IsStdStream(path) ? "stdin" : "'" + path + "'";
}

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

// Appends all bytes of `path` (stdin for "" or "-") to `data`; false with
// `error` set when the file cannot be opened or read.
bool ReadAll(const std::string& path, std::string& data, std::string& error) {
  std::unique_ptr<std::FILE, FileCloser> owned;
  std::FILE* f = stdin;
  if (!IsStdStream(path)) {
    owned.reset(std::fopen(path.c_str(), "rb"));
    if (!owned) {
      error = "cannot open " + Describe(path) + ": " + std::strerror(errno);
      return false;
    }
    f = owned.get();
  }
  char chunk[1 << 16];
  std::size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) data.append(chunk, n);
  if (std::ferror(f)) {
    error = "cannot read " + Describe(path) + ": " + std::strerror(errno);
    return false;
  }
  return true;
}

// Writes `data` to `path` (stdout for "" or "-"); false with `error` set.
bool WriteAll(const std::string& path, const std::string& data, std::string& error) {
  const std::string name = IsStdStream(path) ? "stdout" : "'" + path + "'";
  std::FILE* f = IsStdStream(path) ? stdout : std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    error = "cannot create " + name + ": " + std::strerror(errno);
    return false;
  }
  const bool written = std::fwrite(data.data(), 1, data.size(), f) == data.size();
  const int saved = errno;
  const bool closed = f == stdout ? std::fflush(f) == 0 : std::fclose(f) == 0;
  if (!written || !closed) {
    error = "cannot write " + name + ": " + std::strerror(written ? errno : saved);
    return false;
  }
  return true;
}

int Run(bool deflate, const std::string& in, const std::string& out) {
  std::string input, error;
  if (!ReadAll(in, input, error)) {
    std::cerr << "norvik50 lzw: " << error << '\n';
    return kFileError;
  }
  std::string result;
  try {
    result = deflate ? lzw::Deflate(input) : lzw::Inflate(input);
  } catch (const Error& e) {
    std::cerr << "norvik50 lzw: " << (deflate ? "deflate" : "inflate") << " of " << Describe(in)
              << " failed: error " << e.number() << ": " << ToUtf8(e.description()) << '\n';
    return kDataError;
  } catch (const std::bad_alloc&) {
    // Inflate sizes its output before allocating and says how large it is;
    // this is what is left (deflating a file larger than memory allows).
    std::cerr << "norvik50 lzw: " << (deflate ? "deflate" : "inflate") << " of " << Describe(in)
              << " failed: out of memory\n";
    return kDataError;
  }
  // Not an LZW stream at all decodes to nothing, as the named function
  // answers; say so, since an empty output is easy to miss.
  if (!deflate && result.empty() && !input.empty()) {
    std::cerr << "norvik50 lzw: " << Describe(in)
              << " is not an LZW stream (or holds no text); the output is empty\n";
  }
  if (!WriteAll(out, result, error)) {
    std::cerr << "norvik50 lzw: " << error << '\n';
    return kFileError;
  }
  return 0;
}

}  // namespace

void AddLzwCommand(CLI::App& app) {
  CLI::App* lzw = app.add_subcommand(
      "lzw", "Compress (deflate) or decompress (inflate) a file with the library's LZW codec");
  auto mode = std::make_shared<std::string>();
  auto in = std::make_shared<std::string>();
  auto out = std::make_shared<std::string>();
  // The mode is checked here rather than by the parser, so that a wrong or
  // missing one ends with this command's own exit code, not the parser's.
  lzw->add_option("mode", *mode, "deflate or inflate");
  lzw->add_option("in", *in, "Input file (default: stdin; '-' for stdin)");
  lzw->add_option("out", *out, "Output file (default: stdout; '-' for stdout)");
  lzw->allow_extras();
  lzw->footer(
      "Exit codes: 0 done, 1 the data was refused (empty input to deflate, "
      "damaged stream to inflate, a result too large for memory), 2 a file "
      "could not be read or written, or no such mode.");
  lzw->callback([=] {
    std::string lower = *mode;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if ((lower != "deflate" && lower != "inflate") || !lzw->remaining().empty()) {
      std::cerr << "norvik50 lzw: "
                << (mode->empty() ? std::string("say deflate or inflate")
                    : lzw->remaining().empty()
                        ? "unknown mode '" + *mode + "' (deflate or inflate)"
                        : "too many arguments: '" + lzw->remaining().front() + "'")
                << "\nusage: norvik50 lzw deflate|inflate [IN [OUT]]\n";
      ExitCode() = kUsageError;
      return;
    }
    ExitCode() = Run(lower == "deflate", *in, *out);
  });
}

}  // namespace norvik50::cli
