// Windows paths on the Linux disk: what a file test costs when the host
// spells the path as the disk does, and what the case-insensitive look-up
// costs when it does not.
//  - Anchor: the mapping as it was before paths were looked up without
//    case (the drive map copied, the path joined, one stat), measured in
//    the same run on the same path.
//  - tklFileExists of an existing path spelt exactly: target <= 1.1x the
//    anchor.
//  - A path spelt in another case ("C:\PROG\RES_DE.DLL" for Prog/Res_DE.dll)
//    and a missing file, in folders of 10 to 10,000 entries: reported with
//    the folder's size, as the look-up reads the folder.
//  - Relative and absolute paths, read by their text alone: against a plain
//    copy of the full path's text (anchor), target <= 3x each; also against
//    copying the two texts each member is given.
// The summary prints the best of the repetitions in CPU time.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "best_time_reporter.h"
#include "core/paths.h"
#include "core/windows_path.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"

namespace {

namespace fs = std::filesystem;

// A drive C: whose Prog folder holds Res_DE.dll and `entries` - 1 others.
class Tree {
 public:
  explicit Tree(int64_t entries) {
    std::string pattern = (fs::temp_directory_path() / "norvik50-paths-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    root_ = pattern;
    fs::create_directories(root_ + "/Prog");
    std::ofstream(root_ + "/Prog/Res_DE.dll") << "x";
    for (int64_t i = 1; i < entries; ++i) {
      std::ofstream(root_ + "/Prog/Report_" + std::to_string(i) + ".txt") << "x";
    }
    norvik50::SetDriveRoot(u'C', root_);
  }
  ~Tree() {
    norvik50::ClearDriveRoot(u'C');
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  const std::string& root() const { return root_; }

 private:
  std::string root_;
};

// The mapping before the case-insensitive look-up, for drive paths: a copy
// of the drive map, the root joined with the path's slashes, one stat.
bool FormerFileExists(std::u16string_view path) {
  const auto roots = norvik50::DriveRoots();
  const auto it = roots.find(path[0] >= u'a' ? path[0] - 32 : path[0]);
  if (it == roots.end()) return false;
  std::string rest = norvik50::ToUtf8(path.substr(2));
  std::replace(rest.begin(), rest.end(), '\\', '/');
  if (!rest.empty() && rest.front() == '/') rest.erase(0, 1);
  const std::string linux_path = it->second == "/" ? "/" + rest : it->second + "/" + rest;
  struct stat st {};
  return ::stat(linux_path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

constexpr std::u16string_view kExact = u"C:\\Prog\\Res_DE.dll";
constexpr std::u16string_view kOtherCase = u"C:\\PROG\\RES_DE.DLL";
constexpr std::u16string_view kMissing = u"C:\\Prog\\Res_FR.dll";

void Run(benchmark::State& state, bool (*test)(std::u16string_view), std::u16string_view path,
         bool expected) {
  Tree tree(state.range(0));
  if (test(path) != expected) state.SkipWithError("wrong answer");
  for (auto _ : state) benchmark::DoNotOptimize(test(path));
}

void BM_FormerMapping(benchmark::State& state) { Run(state, FormerFileExists, kExact, true); }
void BM_ExactSpelling(benchmark::State& state) { Run(state, norvik50::FileExists, kExact, true); }
void BM_OtherCase(benchmark::State& state) { Run(state, norvik50::FileExists, kOtherCase, true); }
void BM_MissingFile(benchmark::State& state) { Run(state, norvik50::FileExists, kMissing, false); }

// A document's path as a host stores it, and the folder it is stored
// relative to: three names in common, one to go up, two to go down.
constexpr std::u16string_view kDocument =
    u"C:\\Users\\Meier\\Documents\\Offers\\2024\\Offer_0815.docx";
constexpr std::u16string_view kRelative = u"..\\Offers\\2024\\Offer_0815.docx";
constexpr std::u16string_view kBase = u"C:\\Users\\Meier\\Documents\\Templates";

void BM_CopyPathText(benchmark::State& state) {
  for (auto _ : state) {
    std::u16string copy(kDocument);
    benchmark::DoNotOptimize(copy);
  }
}
// What a member is given, copied: its two texts.
void CopyArguments(benchmark::State& state, std::u16string_view path) {
  for (auto _ : state) {
    std::u16string path_copy(path), base_copy(kBase);
    benchmark::DoNotOptimize(path_copy);
    benchmark::DoNotOptimize(base_copy);
  }
}
void BM_CopyAbsoluteArguments(benchmark::State& state) { CopyArguments(state, kRelative); }
void BM_CopyRelativeArguments(benchmark::State& state) { CopyArguments(state, kDocument); }
void BM_AbsolutePath(benchmark::State& state) {
  if (norvik50::AbsoluteWindowsPath(kRelative, kBase) != kDocument) {
    state.SkipWithError("wrong answer");
  }
  for (auto _ : state) benchmark::DoNotOptimize(norvik50::AbsoluteWindowsPath(kRelative, kBase));
}
void BM_RelativePath(benchmark::State& state) {
  if (norvik50::RelativeWindowsPath(kDocument, kBase) != kRelative) {
    state.SkipWithError("wrong answer");
  }
  for (auto _ : state) benchmark::DoNotOptimize(norvik50::RelativeWindowsPath(kDocument, kBase));
}
BENCHMARK(BM_CopyPathText)->Repetitions(5)->MinTime(0.2);
BENCHMARK(BM_CopyAbsoluteArguments)->Repetitions(5)->MinTime(0.2);
BENCHMARK(BM_CopyRelativeArguments)->Repetitions(5)->MinTime(0.2);
BENCHMARK(BM_AbsolutePath)->Repetitions(5)->MinTime(0.2);
BENCHMARK(BM_RelativePath)->Repetitions(5)->MinTime(0.2);

#define NORVIK50_PATHS_BENCH(fn, ...) \
  BENCHMARK(fn)->ArgName("entries")->__VA_ARGS__->Repetitions(5)->MinTime(0.2)
NORVIK50_PATHS_BENCH(BM_FormerMapping, Arg(10));
NORVIK50_PATHS_BENCH(BM_ExactSpelling, Arg(10));
NORVIK50_PATHS_BENCH(BM_OtherCase, Arg(10)->Arg(100)->Arg(1000)->Arg(10000));
NORVIK50_PATHS_BENCH(BM_MissingFile, Arg(10)->Arg(100)->Arg(1000)->Arg(10000));

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  norvik50::bench::BestTimeReporter r;
  benchmark::RunSpecifiedBenchmarks(&r);
  const double former = r.Ns("BM_FormerMapping/10"), exact = r.Ns("BM_ExactSpelling/10");
  std::printf("\n== tklFileExists, best of 5 in CPU time ==\n");
  if (former > 0 && exact > 0) {
    std::printf("  former mapping + stat     %8.0f ns\n", former);
    std::printf(
        "  exact spelling            %8.0f ns   %.2fx the former mapping (target <= 1.1x)\n", exact,
        exact / former);
  }
  for (const char* entries : {"10", "100", "1000", "10000"}) {
    const double other = r.Ns(std::string("BM_OtherCase/") + entries);
    const double missing = r.Ns(std::string("BM_MissingFile/") + entries);
    if (other == 0 || missing == 0) continue;
    std::printf(
        "  folder of %5s entries: other case %9.0f ns, missing file %9.0f ns (%.0f ns per "
        "entry)\n",
        entries, other, missing, missing / std::stod(entries));
  }
  const double copy = r.Ns("BM_CopyPathText");
  std::printf("\n== Path text, best of 5 in CPU time ==\n");
  if (copy > 0) {
    std::printf("  copy of the path's text   %8.1f ns\n", copy);
    for (const char* member : {"Absolute", "Relative"}) {
      const double ns = r.Ns(std::string("BM_") + member + "Path");
      const double arguments = r.Ns(std::string("BM_Copy") + member + "Arguments");
      if (ns == 0 || arguments == 0) continue;
      std::printf(
          "  %sPath %8.1f ns   %.2fx the copy (target <= 3x), %.2fx a copy of its two texts\n",
          member, ns, ns / copy, ns / arguments);
    }
  }
  benchmark::Shutdown();
  return 0;
}
