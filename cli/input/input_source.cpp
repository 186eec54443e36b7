#include "cli/input/input_source.h"

#include <algorithm>

namespace typescout::cli {

using platform::Kind;
using platform::Place;
using platform::Status;

InputSource::InputSource(const Options& options, std::function<void()> beforeWaiting)
    : options_(options), beforeWaiting_(std::move(beforeWaiting)) {}

std::optional<std::uint64_t> InputSource::Total() const {
  if (options_.recursive || !options_.lists.empty()) return std::nullopt;
  return options_.paths.size();
}

std::string InputSource::TakeListError() { return std::exchange(listError_, {}); }

bool InputSource::Next(Input* input) {
  while (!platform::IsInterrupted()) {
    *input = Input();
    if (!frames_.empty()) {
      if (NextWalked(input)) return true;
      continue;
    }
    std::string path;
    if (nextPath_ < options_.paths.size()) {
      path = options_.paths[nextPath_++];
      input->isContent = path == "-";
    } else if (!NextListed(&path)) {
      return false;
    }
    input->path = std::move(path);
    if (NextNamed(input)) return true;
  }
  return false;
}

bool InputSource::NextListed(std::string* path) {
  while (list_ || nextList_ < options_.lists.size()) {
    if (!list_) list_.emplace(options_.lists[nextList_], options_.listsEndInNul ? '\0' : '\n');
    if (list_->Next(beforeWaiting_, path)) return true;
    if (list_->error() != 0) {
      listError_ = options_.lists[nextList_] + ": " + platform::ErrorText(list_->error());
    }
    list_.reset();
    ++nextList_;
    if (platform::IsInterrupted()) return false;
  }
  return false;
}

bool InputSource::NextNamed(Input* input) {
  if (input->isContent) {
    if (!options_.contentName.empty()) input->path = options_.contentName;
    int error = 0;
    beforeWaiting_();
    std::string* content = &input->content;
    content->resize(HEAD_SIZE);
    std::size_t size = 0;
    while (const std::size_t count = platform::ReadSome(
               platform::StandardInput(), content->data() + size, HEAD_SIZE - size, &error)) {
      size += count;
      if (size == HEAD_SIZE) break;
    }
    content->resize(size);
    if (error != 0) input->reason = platform::ErrorText(error);
    return !platform::IsInterrupted();
  }
  input->place.name = input->path;
  if (input->path.size() > TYPESCOUT_PATH_LIMIT) {
    int error = 0;
    input->place = platform::ReachThroughFolder(input->path, &error);
    if (error != 0) {
      input->reason = platform::ErrorText(error);
      return true;
    }
  }
  return Resolve(true, input);
}

bool InputSource::NextWalked(Input* input) {
  Frame& frame = frames_.back();
  if (frame.next == frame.listing.size()) {
    frames_.pop_back();
    return false;
  }
  const std::string_view name = frame.listing.name(frame.next);
  input->kind = frame.listing.kind(frame.next);
  ++frame.next;
  input->path = platform::JoinPath(frame.path, name);
  input->place = {frame.folder, std::string(name)};
  if (IsExcluded(input->path, name)) return false;

  const bool isLinkToFollow = input->kind == Kind::LINK && options_.dereference;
  const bool isTold = input->kind != Kind::NOT_TOLD && input->kind != Kind::FOLDER;
  if (isTold && !isLinkToFollow) return true;
  return Resolve(options_.dereference, input);
}

bool InputSource::Resolve(bool followLink, Input* input) {
  const Status status = platform::StatusOf(input->place, followLink);
  if (status.error != 0) {
    input->reason = platform::ErrorText(status.error);
    input->kind = Kind::FILE;
    return true;
  }
  input->kind = status.kind;
  if (status.kind != Kind::FOLDER || !options_.recursive) return true;
  return Enter(followLink, status, input);
}

bool InputSource::Enter(bool followLink, const Status& status, Input* input) {
  if (frames_.empty()) {
    rootDevice_ = status.device;
  } else if (options_.oneFileSystem && status.device != rootDevice_) {
    return false;
  }
  // A folder that was entered before stays a record, so that nothing goes unsaid.
  if (!entered_.emplace(status.device, status.serial).second) return true;

  int error = 0;
  Frame frame = {.path = input->path, .folder = nullptr, .listing = {}, .next = 0};
  frame.folder = platform::OpenFolder(input->place, followLink, &error);
  if (frame.folder != nullptr) error = platform::ListFolder(*frame.folder, &frame.listing);
  const bool hasEntries = frame.folder != nullptr && frame.listing.size() != 0;
  if (hasEntries) frames_.push_back(std::move(frame));
  if (error == 0) return false;
  input->reason = platform::ErrorText(error);
  return true;
}

bool InputSource::IsExcluded(const std::string& path, std::string_view name) const {
  return std::any_of(options_.excludes.begin(), options_.excludes.end(),
                     [&](const std::string& glob) {
                       const bool isForPath = glob.find('/') != std::string::npos;
                       return platform::MatchesGlob(glob, isForPath ? path : std::string(name));
                     });
}

}  // namespace typescout::cli
