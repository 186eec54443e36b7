// Prints the filter identifiers of the files named on the command line. For systems whose paths are
// bytes; on Windows a program passes the wide paths that it gets as they are.
#include <typescout/typescout.h>

#include <cstdio>
#include <string>

// Every byte beyond ASCII is given as the character that stands for it, whatever the name's
// encoding. (One character for each character of UTF-8 would do, too, and make longer paths fit.)
static std::wstring ToWide(const std::string& path) {
  std::wstring wide;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    wide += static_cast<wchar_t>(byte < 0x80 ? byte : 0xDC00 + byte);
  }
  return wide;
}

static int Recognise(const std::string& path) {
  try {
    return TypeScoutFile(ToWide(path).c_str());
  } catch (int) {
    return 0;  // a GIF file that became shorter meanwhile
  }
}

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    std::printf("%s: 0x%04X\n", argv[i], static_cast<unsigned>(Recognise(argv[i])));
  }
}
