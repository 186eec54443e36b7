// A call whose stack frame has an unwind handler of the system's. The compiler's own frames have
// the handler of its C++ runtime, which ignores exceptions of other runtimes.
#include <windows.h>

#include "host/library.h"

namespace {

// The exceptions of GCC's runtime (libgcc, unwind-seh.c): thrown, unwinding, forced.
constexpr DWORD THROWN_BY_GCC = 0x20474343;
constexpr DWORD UNWINDING_BY_GCC = 0x21474343;
constexpr DWORD FORCED_BY_GCC = 0x22474343;

// What the function below keeps on its stack, above the area that belongs to the called function.
struct GuardedFrame {
  void* calleesArea[4];
  void (*left)(void* data, bool runsDestructors);
  void* data;
};

}  // namespace

// Called by the system while it unwinds the stack for an exception that will be caught.
extern "C" [[gnu::used]] EXCEPTION_DISPOSITION typescout_guarded_frame_left(
    EXCEPTION_RECORD* exception, void* stackPointer, CONTEXT* /*context*/, void* /*dispatcher*/) {
  const DWORD code = exception->ExceptionCode;
  const auto* const frame = static_cast<const GuardedFrame*>(stackPointer);
  frame->left(frame->data,
              code == THROWN_BY_GCC || code == UNWINDING_BY_GCC || code == FORCED_BY_GCC);
  return ExceptionContinueSearch;
}

// typescout_guarded_call(call, left, data): keeps `left` and `data` where the handler looks, and
// calls `call(data)`.
asm(R"(
  .text
  .p2align 4
  .globl typescout_guarded_call
  .def typescout_guarded_call; .scl 2; .type 32; .endef
  .seh_proc typescout_guarded_call
typescout_guarded_call:
  subq $56, %rsp
  .seh_stackalloc 56
  .seh_endprologue
  movq %rdx, 32(%rsp)
  movq %r8, 40(%rsp)
  movq %rcx, %rax
  movq %r8, %rcx
  call *%rax
  nop
  addq $56, %rsp
  ret
  .seh_handler typescout_guarded_frame_left, @unwind
  .seh_endproc
)");
extern "C" void typescout_guarded_call(void (*call)(void* data),
                                       void (*left)(void* data, bool runsDestructors), void* data);

void TvnUtils::CallGuarded(void (*call)(void* data), void (*left)(void* data, bool runsDestructors),
                           void* data) {
  typescout_guarded_call(call, left, data);
}
