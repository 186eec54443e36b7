// The header of the word-processor family: the 16 bytes that open its documents and graphics, and
// the main stream of its compound documents.
#ifndef TYPESCOUT_DETECTORS_DOCUMENTS_SCRIPTORA_HEADER_H
#define TYPESCOUT_DETECTORS_DOCUMENTS_SCRIPTORA_HEADER_H

#include <memory>

#include "core/probe_context.h"

namespace typescout {

inline constexpr ByteView::Position SCRIPTORA_HEADER_SIZE = 16;
inline constexpr const wchar_t* SCRIPTORA_MAIN_STREAM = L"ScriptoraDesk_MAIN";

// The file-type byte.
enum class ScriptoraType : std::uint8_t { DOCUMENT = 0x0A, GRAPHICS = 0x16 };

// Whether `bytes` begin with a whole header whose product is the word processor and whose file type
// is `type`.
bool HasScriptoraHeader(ByteView bytes, ScriptoraType type);

// The first bytes of the main stream, as many as the head has.
class ScriptoraStream {
 public:
  // Reads the stream and closes it. No bytes without a storage, without the stream or when memory
  // runs out.
  explicit ScriptoraStream(const ProbeContext* probe);

  // Valid while the object lives.
  ByteView Bytes() const { return bytes_; }

 private:
  std::unique_ptr<unsigned char[]> buffer_;
  ByteView bytes_;
};

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_DOCUMENTS_SCRIPTORA_HEADER_H
