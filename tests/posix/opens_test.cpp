// What is opened, as the system saw it: an ordinary file once, a special file never.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "host/posix/wide_path.h"
#include "tests/samples/sample.h"
#include "tests/support/compound_writer.h"
#include "tests/support/temp_folder.h"
#include "typescout/typescout.h"

namespace typescout::tests {
namespace {

// Counts how often a file, of whatever kind, is opened while it lives.
class OpensOf {
 public:
  explicit OpensOf(const std::string& path) {
    // The system merges equal events that follow one another, so each close is one of them.
    EXPECT_GE(inotify_add_watch(queue_, path.c_str(), IN_OPEN | IN_CLOSE), 0) << path;
  }
  OpensOf(const OpensOf&) = delete;
  OpensOf& operator=(const OpensOf&) = delete;
  ~OpensOf() { close(queue_); }

  int Count() {
    alignas(inotify_event) char events[4096];
    const ssize_t size = read(queue_, events, sizeof events);
    for (ssize_t at = 0; at < size;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(events + at);
      if ((event->mask & IN_OPEN) != 0) ++count_;
      at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    return count_;
  }

 private:
  int queue_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  int count_ = 0;
};

// Asks every way that touches the file.
int Ask(const std::string& path) {
  const auto wide = posix_host::WidePath(path);
  unsigned char nothing[] = "\1";
  int text = 0x0901;
  CheckFiltersFromIDList(wide, &text, 1, 1, nothing, 0);
  return TypeScoutFile(wide);
}

// The state of a thread, by the system's letter for it.
char StateOf(pid_t thread) {
  std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string line;
  std::getline(stat, line);
  const std::size_t name = line.rfind(')');
  return name == std::string::npos ? '?' : line[name + 2];
}

class Opens : public testing::Test {
 protected:
  const TempFolder folder_;
};

TEST_F(Opens, OnceForAFileAndTwiceForADocument) {
  const struct {
    std::string bytes;
    int answer;
    int opens;
  } CASES[] = {{"\x89PNG\r\n\x1A\n", 0x0322, 1},
               {"text", 0x0903, 1},
               {"\1", 0, 1},
               {"", 0, 1},
               {WriteCompound({{L"WordDocument", PadTo(1'536, "\xEC\xA5\xC1")}}), 0x0814, 2}};
  for (const auto& c : CASES) {
    const std::string path = folder_.Write("file", c.bytes);
    OpensOf opens(path);
    EXPECT_EQ(TypeScoutFile(posix_host::WidePath(path)), c.answer);
    EXPECT_EQ(opens.Count(), c.opens) << std::hex << c.answer;
  }
}

// A program that waits for somebody to read from its pipe goes on waiting.
TEST_F(Opens, NoPipe) {
  const std::string path = folder_.path() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::atomic<pid_t> writer = 0;
  std::atomic<bool> isAwake = false;
  std::thread waiting([&] {
    writer = gettid();
    const int pipe = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    isAwake = true;
    close(pipe);
  });
  while (writer == 0 || StateOf(writer) != 'S') std::this_thread::yield();
  EXPECT_EQ(Ask(path), 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(isAwake);
  const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // ends the wait
  waiting.join();
  close(reader);
}

TEST_F(Opens, NoDeviceSocketOrFolder) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_EQ(grantpt(terminal) + unlockpt(terminal), 0);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  const std::string socket = folder_.path() / "socket";
  socket.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  for (const std::string& path :
       {std::string(ptsname(terminal)), socket, folder_.path().string()}) {
    OpensOf opens(path);
    EXPECT_EQ(Ask(path), 0) << path;
    EXPECT_EQ(opens.Count(), 0) << path;
  }
  close(listener);
  close(terminal);
}

// The system lets nobody open the file until its lease is given up.
TEST_F(Opens, AFileUnderALease) {
  const std::string path = folder_.Write("file", "\x89PNG\r\n\x1A\n");
  int ready[2];
  ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
  const pid_t holder = fork();
  ASSERT_GE(holder, 0);
  if (holder == 0) {
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGIO);
    sigprocmask(SIG_BLOCK, &broken, nullptr);
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    const char isHeld = fcntl(file, F_SETLEASE, F_WRLCK) == 0;
    int signal = 0;
    if (write(ready[1], &isHeld, 1) == 1 && isHeld) sigwait(&broken, &signal);
    _exit(signal == SIGIO ? 0 : 1);
  }
  char isHeld = 0;
  ASSERT_EQ(read(ready[0], &isHeld, 1), 1);
  if (isHeld != 0) {
    EXPECT_EQ(TypeScoutFile(posix_host::WidePath(path)), 0x0322);
  }
  int status = 0;
  waitpid(holder, &status, 0);
  close(ready[0]);
  close(ready[1]);
  if (isHeld == 0) GTEST_SKIP() << "no leases here";
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace typescout::tests
