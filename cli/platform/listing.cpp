#include <algorithm>
#include <cstring>

#include "cli/platform/folders.h"

namespace typescout::cli::platform {

void Listing::Add(std::string_view name, Kind kind) {
  starts_.push_back(names_.size());
  names_ += static_cast<char>(kind);
  names_ += name;
  names_ += '\0';
  longestName_ = std::max(longestName_, name.size());
}

void Listing::Sort() {
  std::sort(starts_.begin(), starts_.end(), [this](std::size_t a, std::size_t b) {
    return std::strcmp(names_.data() + a + 1, names_.data() + b + 1) < 0;
  });
}

std::string_view Listing::name(std::size_t index) const {
  return names_.data() + starts_[index] + 1;
}

Kind Listing::kind(std::size_t index) const { return static_cast<Kind>(names_[starts_[index]]); }

}  // namespace typescout::cli::platform
