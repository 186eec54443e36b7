#include "cli/input/input_source.h"

#include <algorithm>

#include "cli/platform/signals.h"
#include "cli/platform/system.h"

namespace typescout::cli {

using platform::Kind;
using platform::Place;

namespace {

// How many of the folders that are being walked are held open, the innermost ones.
constexpr std::size_t OPEN_FOLDERS = 64;

}  // namespace

InputSource::InputSource(const Options& options)
    : options_(options), excludes_(options.excludes.begin(), options.excludes.end()) {
  for (const std::string& path : options.paths) platform::ExpandWildcards(path, &paths_);
}

std::optional<std::uint64_t> InputSource::Total() const {
  if (options_.recursive || !options_.lists.empty()) return std::nullopt;
  return paths_.size();
}

bool InputSource::Next(Input* input) {
  while (!platform::IsInterrupted()) {
    *input = Input();
    if (!frames_.empty()) {
      if (NextWalked(input)) return true;
      continue;
    }
    if (nextPath_ < paths_.size()) {
      const std::string& path = paths_[nextPath_++];
      if (path == "-") {
        input->type = Input::Type::CONTENT;
        input->path = options_.contentName.value_or(path);
        return true;
      }
      NextPath(path, input);
    } else if (!NextListed(input)) {
      return false;
    }
    if (input->type != Input::Type::PATH || !input->error.empty()) return true;
    if (!Resolve(true, input)) return true;
    if (input->kind != Kind::FOLDER || !options_.recursive || Enter(true, input)) return true;
  }
  return false;
}

void InputSource::NextPath(std::string path, Input* input) {
  input->path = std::move(path);
  if (input->path.size() <= TYPESCOUT_PATH_LIMIT) return;
  int error = 0;
  Place place = platform::ReachThroughFolder(input->path, &error);
  if (error != 0) {
    input->error = platform::ErrorText(error);
  } else if (place.folder != nullptr) {
    input->reach = std::move(place);
  }
}

bool InputSource::NextListed(Input* input) {
  for (; nextList_ < options_.lists.size(); ++nextList_) {
    const std::string& file = options_.lists[nextList_];
    if (!list_) list_.emplace(file, options_.listsEndInNul);
    std::string path;
    switch (list_->Next(&path)) {
      case PathList::Result::PATH:
        NextPath(std::move(path), input);
        return true;
      case PathList::Result::TOO_LONG:
        input->path = path.substr(0, TYPESCOUT_PATH_LIMIT) + "...";
        input->error = "An entry of more than 65,536 bytes";
        return true;
      case PathList::Result::HAS_NUL:
        input->type = Input::Type::BAD_LIST;
        input->error = file + ": zero bytes in a list of lines; see --null";
        return true;
      case PathList::Result::ALL_EMPTY:
        input->type = Input::Type::BAD_LIST;
        input->error = file + ": more than 65,536 empty entries in a row";
        return true;
      case PathList::Result::END:
        break;
    }
    if (list_->error() != 0) {
      input->type = Input::Type::LIST_ERROR;
      input->error = file + ": " + platform::ErrorText(list_->error());
    }
    list_.reset();
    if (platform::IsInterrupted()) return false;
    if (input->type == Input::Type::LIST_ERROR) {
      ++nextList_;
      return true;
    }
  }
  return false;
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
  if (frame.isLong) {
    if (frame.folder == nullptr) {
      int error = 0;
      frame.folder =
          platform::ReachThroughFolder(platform::JoinPath(frame.path, ""), &error).folder;
      if (error != 0) input->error = platform::ErrorText(error);
    }
    input->reach = {frame.folder, std::string(name)};
  }

  const bool isLinkToFollow = input->kind == Kind::LINK && options_.dereference;
  const bool needsStatus =
      isLinkToFollow || input->kind == Kind::NOT_TOLD || input->kind == Kind::FOLDER;
  if (needsStatus && input->error.empty()) Resolve(options_.dereference, input);
  const bool isFolder = input->kind == Kind::FOLDER;
  if (std::any_of(excludes_.begin(), excludes_.end(),
                  [&](const Glob& glob) { return glob.Matches(input->path, name, isFolder); })) {
    return false;
  }
  return !isFolder || !input->error.empty() || Enter(options_.dereference, input);
}

bool InputSource::Resolve(bool followLink, Input* input) {
  input->status = platform::StatusOf(input->Place(), followLink);
  const int error = input->status->error;
  if (error != 0) input->error = platform::ErrorText(error);
  input->kind = error != 0 ? Kind::FILE : input->status->kind;
  return error == 0;
}

// A folder that is not entered gets a record of its own.
bool InputSource::Enter(bool followLink, Input* input) {
  const platform::Status& status = *input->status;
  if (frames_.empty()) {
    rootDevice_ = status.device;
  } else if (options_.oneFileSystem && status.device != rootDevice_) {
    return true;
  }
  if (!entered_.emplace(status.device, status.serial).second) return true;

  Frame frame;
  int error = platform::ListFolder(input->Place(), followLink, &frame.listing);
  if (frame.listing.size() != 0) {
    frame.path = input->path;
    frame.isLong = frame.path.size() + 1 + frame.listing.LongestName() > TYPESCOUT_PATH_LIMIT;
    if (frame.isLong) frame.folder = platform::OpenFolder(input->Place(), followLink, &error);
    frames_.push_back(std::move(frame));
    if (frames_.size() > OPEN_FOLDERS) frames_[frames_.size() - 1 - OPEN_FOLDERS].folder.reset();
  }
  if (error == 0) return false;
  input->error = platform::ErrorText(error);
  return true;
}

}  // namespace typescout::cli
