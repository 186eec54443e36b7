#include "core/byte_view.h"

namespace typescout {

ByteView::Position ByteView::Find(std::string_view text) const {
  if (text.empty()) return 0;
  return FindSequence(static_cast<std::uint8_t>(text.front()), static_cast<Position>(text.size()),
                      [text](Position i, std::uint8_t byte) {
                        return byte == static_cast<std::uint8_t>(text[static_cast<std::size_t>(i)]);
                      });
}

}  // namespace typescout
