// The modules of the suite by the real loader: where they are looked for, which are refused, and
// when they stay loaded. The answer for the PDF file a0 is 1 when no module is asked, and 0 by the
// tests' own module.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "host/library.h"
#include "host/posix/wide_path.h"
#include "tests/posix/ask_from.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr int CAMERA_RAW = 0x0337;
constexpr int ILLUSTRATOR_PDF = 0x0535;
constexpr int ILLUSTRATOR = 0x0503;
constexpr uid_t OTHER_USER = 65534;

class Modules : public testing::Test {
 protected:
  Modules() : umask_(umask(022)) {
    for (const char* pdf : {"a0", "a2", "a8", "a?"}) folder_.Write(pdf, "%PDF-1.7");
    for (const char* raw : {"photo", "photo+", "photo?"}) folder_.Write(raw, "raw");
  }
  ~Modules() override {
    unsetenv("TVN_FILTERS_DIR");
    umask(umask_);
  }

  std::string Path(const std::string& name) const { return folder_.path() / name; }

  // Copies the tests' module.
  void PutModule(const std::string& name) const { Put(TEST_MODULE_FILE, name); }
  void Put(const fs::path& file, const std::string& name) const {
    fs::create_directories(fs::path(Path(name)).parent_path());
    fs::copy_file(file, Path(name), fs::copy_options::overwrite_existing);
    chmod(Path(name).c_str(), 0755);
  }

  int Ask(const std::string& name, int filter, int requested = 0) const {
    const auto path = posix_host::WidePath(Path(name));
    return CheckOneFilter(path, filter, requested);
  }
  // Asks the PDF row about a0 while the filters are in this folder.
  int AskPdfRow(const std::string& filters) const {
    setenv("TVN_FILTERS_DIR", filters.c_str(), 1);
    return Ask("a0", ILLUSTRATOR_PDF);
  }

  // Asks in a process of its own, started in the test's folder with this environment; `program`
  // names ask_from there.
  int AskFromAnew(const std::string& environment, const std::string& library,
                  const std::string& folder, const std::string& name, int filter,
                  const std::string& program = ASK_FROM_FILE) const {
    const auto quoted = [](const std::string& text) { return "'" + text + "' "; };
    const std::string command = "cd " + quoted(folder_.path()) + "&& env " + environment + " " +
                                quoted(program) + quoted(library) + quoted(folder) +
                                quoted(Path(name)) + std::to_string(filter);
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  const TempFolder folder_;

 private:
  const mode_t umask_;
};

TEST_F(Modules, AnswerForTheirRows) {
  PutModule("filters/TvnPDFImport.so");
  EXPECT_EQ(AskPdfRow(Path("filters")), 0);
  EXPECT_EQ(Ask("a2", ILLUSTRATOR_PDF), 1);
  EXPECT_EQ(Ask("a2", ILLUSTRATOR_PDF, ILLUSTRATOR), 0);
  EXPECT_EQ(Ask("a8", ILLUSTRATOR_PDF, ILLUSTRATOR), 1);
  EXPECT_EQ(dlopen(Path("filters/TvnPDFImport.so").c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr)
      << "stays loaded";
  // Modules without the function, damaged, and missing.
  Put(TYPESCOUT_FILE, "others/TvnPDFImport.so");
  folder_.Write("damaged/TvnPDFImport.so", "\177ELF");
  for (const char* folder : {"others", "damaged", "missing"}) {
    EXPECT_EQ(AskPdfRow(Path(folder)), 1) << folder;
  }
}

TEST_F(Modules, AreNotLookedAtAgainWhileTheProgramHoldsThem) {
  const std::string module = Path("filters/TvnPDFImport.so");
  PutModule("filters/TvnPDFImport.so");
  void* const held = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
  chmod(module.c_str(), 0777);
  EXPECT_EQ(AskPdfRow(Path("filters")), 0);
  dlclose(held);
  EXPECT_EQ(AskPdfRow(Path("filters")), 1);
}

TEST_F(Modules, AreLookedForInTwoFoldersOnly) {
  for (const char* folder : {"app/", "bare/"}) Put(TYPESCOUT_FILE, folder + "libtypescout.so"s);
  for (const char* module : {"app/DCRaw.so", "app/filters/TvnPDFImport.so", "elsewhere/DCRaw.so",
                             "elsewhere/libDCRaw.so", "elsewhere/TvnPDFImport.so",
                             "elsewhere/filters/TvnPDFImport.so"}) {
    PutModule(module);
  }
  const std::string search = "LD_LIBRARY_PATH='" + Path("elsewhere") + "'";
  const std::string setting = "TVN_FILTERS_DIR='" + Path("elsewhere") + "'";
  const std::string app = "app/libtypescout.so", bare = "bare/libtypescout.so";
  const std::string longName = "TVN_FILTERS_DIR=/" + std::string(2'000, 'n');
  const std::tuple<const char*, std::string, std::string, std::string, std::string, int> CASES[] = {
      {"beside", "", Path(app), "/", "photo+", 1},
      {"beside, no", "", Path(app), "/", "photo", 0},
      {"loaded by a relative name", "", app, "/", "photo+", 1},
      {"current folder", "", bare, "elsewhere", "photo+", 0},
      {"search path", search, bare, "/", "photo+", 0},
      {"filters beside", "", app, "/", "a0", 0},
      {"no filters beside", "", bare, "elsewhere", "a0", 1},
      {"filters as set", setting, bare, "/", "a0", 0},
      {"set to nothing", "TVN_FILTERS_DIR=", app, "/", "a0", 0},
      {"set to a relative folder", "TVN_FILTERS_DIR=filters", app, "elsewhere", "a0", 1},
      {"set to a long name", longName, app, "/", "a0", 1},
  };
  for (const auto& [what, environment, library, folder, file, answer] : CASES) {
    const int filter = file == "a0" ? ILLUSTRATOR_PDF : CAMERA_RAW;
    EXPECT_EQ(AskFromAnew(environment, library, folder, file, filter), answer) << what;
  }
}

TEST_F(Modules, AreNotChosenByTheUserOfASetuidProgram) {
  Put(TYPESCOUT_FILE, "bare/libtypescout.so");
  PutModule("elsewhere/TvnPDFImport.so");
  Put(ASK_FROM_FILE, "ask_from");
  chmod(folder_.path().c_str(), 0755);
  if (chown(Path("ask_from").c_str(), OTHER_USER, OTHER_USER) != 0 ||
      chmod(Path("ask_from").c_str(), 04755) != 0 ||
      AskFromAnew("", "-", "/", "a0", 0, Path("ask_from")) != AskFrom::IS_SECURE) {
    GTEST_SKIP() << "setuid programs cannot be tried here";
  }
  EXPECT_EQ(AskFromAnew("TVN_FILTERS_DIR='" + Path("elsewhere") + "'", Path("bare/libtypescout.so"),
                        "/", "a0", ILLUSTRATOR_PDF, Path("ask_from")),
            1);
}

// A library's initialisation asks and forks, while the loader's lock is held and other threads wait
// for it.
TEST_F(Modules, AreAskedByALibraryThatIsBeingInitialised) {
  static thread_local decltype(this) asking = nullptr;
  static thread_local int answer = -1;
  constexpr auto WHEN_INITIALISED = [] {
    const auto modules = std::exchange(asking, nullptr);
    if (modules == nullptr) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // the others get to the loader
    const pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    answer = modules->Ask("a0", ILLUSTRATOR_PDF);
  };
  PutModule("filters/TvnPDFImport.so");
  PutModule("library.so");
  setenv("TVN_FILTERS_DIR", Path("filters").c_str(), 1);
  const auto address = reinterpret_cast<std::uintptr_t>(+WHEN_INITIALISED);
  setenv("TEST_MODULE_CALLS", std::to_string(address).c_str(), 1);
  std::atomic<bool> isOver = false;
  std::jthread other([&] {
    while (!isOver) Ask("a0", ILLUSTRATOR_PDF);
  });
  alarm(60);  // instead of waiting for ever
  asking = this;
  void* const library = dlopen(Path("library.so").c_str(), RTLD_NOW);
  EXPECT_EQ(answer, 0);
  dlclose(library);
  alarm(0);
  isOver = true;
  other.join();
  unsetenv("TEST_MODULE_CALLS");
}

// The exception's class, and so the function that destroys it, is in the module.
TEST_F(Modules, StayInMemoryWhenTheyThrow) {
  Put(TYPESCOUT_FILE, "app/libtypescout.so");
  PutModule("app/DCRaw.so");
  PutModule("app/filters/TvnPDFImport.so");
  const std::string library = Path("app/libtypescout.so");
  EXPECT_EQ(AskFromAnew("", library, "/", "photo?", CAMERA_RAW), AskFrom::THROWN);
  EXPECT_EQ(AskFromAnew("", library, "/", "a?", ILLUSTRATOR_PDF), AskFrom::THROWN);
}

TEST_F(Modules, AreRefusedWhereOthersMayChangeThem) {
  const uid_t user = geteuid();
  constexpr int LOADED = 0;
  constexpr int REFUSED = 1;
  const struct {
    const char* what;
    const char* which;  // of above/filters/TvnPDFImport.so
    mode_t mode;
    int answer;
    uid_t owner = geteuid(), asker = geteuid();
  } CASES[] = {
      {"nothing", "above", 0700, LOADED},
      {"file that a group may write", "above/filters/TvnPDFImport.so", 0775, REFUSED},
      {"file that all may write", "above/filters/TvnPDFImport.so", 0757, REFUSED},
      {"folder that a group may write", "above/filters", 0770, REFUSED},
      {"folder that all may write", "above/filters", 0777, REFUSED},
      {"folder that all may write, sticky", "above/filters", 01777, REFUSED},
      {"folder above that all may write", "above", 0777, REFUSED},
      {"folder above that all may write, sticky", "above", 01777, LOADED},
      {"file of another user", "above/filters/TvnPDFImport.so", 0755, REFUSED, OTHER_USER},
      {"folder of another user", "above/filters", 0755, REFUSED, OTHER_USER},
      {"folder above of another user", "above", 0755, REFUSED, OTHER_USER},
      {"folder of the effective user's", "above/filters", 0755, LOADED, OTHER_USER, OTHER_USER},
      {"folder of root's", "above/filters", 0755, LOADED, user, OTHER_USER},
  };
  chmod(folder_.path().c_str(), 0755);
  fs::create_symlink("above/filters", Path("link"));
  for (const auto& c : CASES) {
    if (user != 0 && (c.owner != user || c.asker != user)) continue;
    PutModule("above/filters/TvnPDFImport.so");
    ASSERT_EQ(chown(Path(c.which).c_str(), c.owner, static_cast<gid_t>(-1)), 0);
    chmod(Path(c.which).c_str(), c.mode);
    ASSERT_EQ(seteuid(c.asker), 0);
    EXPECT_EQ(AskPdfRow(Path("missing")), 1) << "the file itself must be readable";
    const int answer = AskPdfRow(Path("above/filters"));
    const int answerByLink = AskPdfRow(Path("link"));
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_EQ(answer, c.answer) << c.what;
    EXPECT_EQ(answerByLink, c.answer) << c.what << ", by a link";
    fs::remove_all(Path("above"));
  }
}

TEST_F(Modules, AreRegularFilesAtLiteralPaths) {
  alarm(60);  // the loader would wait for a writer of the pipe
  fs::create_directories(Path("pipe"));
  ASSERT_EQ(mkfifo(Path("pipe/TvnPDFImport.so").c_str(), 0600), 0);
  EXPECT_EQ(AskPdfRow(Path("pipe")), 1);
  fs::create_directories(Path("folder/TvnPDFImport.so"));
  EXPECT_EQ(AskPdfRow(Path("folder")), 1);
  alarm(0);

  // The loader knows $LIB as one of these.
  PutModule("$LIB/TvnPDFImport.so");
  for (const char* lib : {"lib", "lib64", "lib/x86_64-linux-gnu", "lib/aarch64-linux-gnu"}) {
    PutModule(lib + std::string("/TvnPDFImport.so"));
  }
  EXPECT_EQ(AskPdfRow(Path("$LIB")), 1);
  EXPECT_EQ(AskPdfRow(Path("lib")), 0);

  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  EXPECT_EQ(AskPdfRow("lib"), 1);
  fs::current_path(before);
}

TEST_F(Modules, AreFoundWithoutAnExtensionAndKeepTheirNamesToThemselves) {
  PutModule("a.b/Some.so");
  for (const char* name : {"a.b/Some", "a.b/Some.so"}) {
    TvnUtils::TvnLibrary library{posix_host::WidePath(Path(name))};
    EXPECT_TRUE(library.Load()) << name;
    EXPECT_TRUE(library.Load()) << "still";
    EXPECT_NE(library.GetSymbol("CheckForRaw"), nullptr);
    EXPECT_EQ(library.GetSymbol("CheckForRAW"), nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "CheckForRaw"), nullptr) << "RTLD_GLOBAL";
    EXPECT_TRUE(library.Unload());
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(dlopen(Path("a.b/Some.so").c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr);
  }
}

}  // namespace
}  // namespace typescout::tests
