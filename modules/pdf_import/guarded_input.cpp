#include "modules/pdf_import/guarded_input.h"

#include <zlib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdf_import {
namespace {

using modules::LimitReached;

// ISO 32000-1, 7.2.2; qpdf takes the vertical tab for one, too.
bool IsSpace(int c) { return c == '\0' || (c >= '\t' && c <= '\r') || c == ' '; }

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

// The dictionaries and arrays that are open. What is closed as something else than it was opened is
// damage, which qpdf skips in its own way.
class Nesting {
 public:
  explicit Nesting(char first) : open_(1, first) {}
  std::size_t depth() const { return open_.size(); }
  void Open(char kind) { open_ += kind; }
  void Close(char kind) {
    if (open_.empty() || open_.back() != kind) throw LimitReached();
    open_.pop_back();
  }

 private:
  std::string open_;
};

// Counts what is written to it.
class Counter final : public Pipeline {
 public:
  explicit Counter(std::int64_t limit) : Pipeline("counter", nullptr), limit_(limit) {}
  void write(const unsigned char* /*data*/, std::size_t size) override {
    count_ += static_cast<std::int64_t>(size);
    if (count_ > limit_) throw LimitReached();
  }
  void finish() override {}
  std::int64_t count() const { return count_; }

 private:
  const std::int64_t limit_;
  std::int64_t count_ = 0;
};

class Inflater {
 public:
  Inflater() {
    if (inflateInit(&stream_) != Z_OK) throw LimitReached();
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { inflateEnd(&stream_); }

  z_stream* operator->() { return &stream_; }
  // Unpacks what is in `next_in` into `to`; how many bytes came out. LimitReached when it is no
  // packed data.
  std::int64_t Unpack(std::array<unsigned char, 16384>& to) {
    stream_.next_out = to.data();
    stream_.avail_out = static_cast<uInt>(to.size());
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) throw LimitReached();
    isAtEnd_ = result == Z_STREAM_END;
    return static_cast<std::int64_t>(to.size() - stream_.avail_out);
  }
  bool IsAtEnd() const { return isAtEnd_; }

 private:
  z_stream stream_ = {};
  bool isAtEnd_ = false;
};

}  // namespace

// An object's beginning, read by qpdf's own rules: what it is taken for here, qpdf takes it for.
class GuardedInput::Object {
 public:
  Object(modules::BoundedFile& file, std::int64_t offset) : file_(file), at_(offset) {
    tokenizer_.allowEOF();
  }

  // Reads on to the data of a stream; false when the object is something else.
  bool ReachStreamData() {
    number_ = Next();
    generation_ = Next();
    if (!number_.isInteger() || !generation_.isInteger() || !Next().isWord("obj")) return false;
    if (Next().getType() != QPDFTokenizer::tt_dict_open) return false;
    for (Nesting open('<'); open.depth() > 0;) {
      const QPDFTokenizer::Token token = Next();
      switch (token.getType()) {
        case QPDFTokenizer::tt_dict_open:
          open.Open('<');
          break;
        case QPDFTokenizer::tt_array_open:
          open.Open('[');
          break;
        case QPDFTokenizer::tt_dict_close:
          open.Close('<');
          break;
        case QPDFTokenizer::tt_array_close:
          open.Close('[');
          break;
        case QPDFTokenizer::tt_eof:
          return false;
        case QPDFTokenizer::tt_name:
          if (open.depth() == 1) {
            const std::int64_t behind = at_;
            TakeName(token.getValue());
            at_ = behind;
          }
          break;
        default:
          break;
      }
    }
    if (!Next().isWord("stream")) return false;
    if (isStrange_) throw LimitReached();
    // No packed data begins with white space.
    while (IsSpace(file_.ByteAt(at_))) ++at_;
    return true;
  }

  std::int64_t at() const { return at_; }
  bool IsPacked() const { return filters_ > 0; }
  // In bytes; -1 when that stands elsewhere.
  std::int64_t length() const { return length_; }
  QPDFObjGen Id() const {
    return QPDFObjGen(std::atoi(number_.getValue().c_str()),
                      std::atoi(generation_.getValue().c_str()));
  }

 private:
  using Token = QPDFTokenizer::Token;

  Token Next() {
    Token token;
    char c = 0;
    bool isAhead = false;
    for (;;) {
      const int byte = file_.ByteAt(at_);
      if (byte < 0) {
        tokenizer_.presentEOF();
      } else {
        c = static_cast<char>(byte);
        tokenizer_.presentCharacter(c);
        ++at_;
      }
      if (tokenizer_.getToken(token, isAhead, c)) break;
    }
    if (isAhead) --at_;
    return token;
  }

  // Of a stream's dictionary: how it is packed. A reference to another object counts as strange: it
  // is allowed, but writers do not use it. The values are read ahead only.
  void TakeName(const std::string& name) {
    if (name == "/Filter") {
      isStrange_ = isStrange_ || hasFilter_ || !TakeFilter();
      hasFilter_ = true;
    } else if (name == "/DecodeParms") {
      isStrange_ = isStrange_ || !TakeParameters();
    } else if (name == "/Length") {
      TakeLength();
    }
  }

  void TakeLength() {
    length_ = -1;
    const Token token = Next();
    if (token.isInteger() && !Next().isInteger()) {
      length_ = std::strtoll(token.getValue().c_str(), nullptr, 10);
    }
  }

  bool TakeFilter() {
    Token token = Next();
    if (token.getType() == QPDFTokenizer::tt_array_open) {
      while ((token = Next()).getType() != QPDFTokenizer::tt_array_close) {
        if (!TakeFilterName(token)) return false;
      }
      return true;
    }
    return TakeFilterName(token);
  }

  bool TakeFilterName(const Token& token) {
    return token.getType() == QPDFTokenizer::tt_name && ++filters_ == 1 &&
           (token.getValue() == "/FlateDecode" || token.getValue() == "/Fl");
  }

  // Rows of a size that make no difference.
  bool TakeParameters() {
    constexpr int LARGEST = 1024;
    int depth = 0;
    do {
      const Token token = Next();
      switch (token.getType()) {
        case QPDFTokenizer::tt_dict_open:
        case QPDFTokenizer::tt_array_open:
          ++depth;
          break;
        case QPDFTokenizer::tt_dict_close:
        case QPDFTokenizer::tt_array_close:
          --depth;
          break;
        case QPDFTokenizer::tt_integer:
          if (std::strtoll(token.getValue().c_str(), nullptr, 10) > LARGEST) return false;
          break;
        case QPDFTokenizer::tt_name:
        case QPDFTokenizer::tt_null:
        case QPDFTokenizer::tt_bool:
          break;
        default:
          return false;
      }
    } while (depth > 0);
    return true;
  }

  modules::BoundedFile& file_;
  std::int64_t at_;
  QPDFTokenizer tokenizer_;
  Token number_, generation_;
  std::int64_t length_ = -1;
  int filters_ = 0;
  bool hasFilter_ = false;
  bool isStrange_ = false;
};

qpdf_offset_t GuardedInput::findAndSkipNextEOL() {
  const auto isEnd = [](int c) { return c == '\r' || c == '\n'; };
  int c = file_.ByteAt(position_);
  while (c >= 0 && !isEnd(c)) c = file_.ByteAt(++position_);
  const std::int64_t at = position_;
  while (isEnd(c)) c = file_.ByteAt(++position_);
  return at;
}

void GuardedInput::seek(qpdf_offset_t offset, int origin) {
  const char* const here = static_cast<const char*>(__builtin_frame_address(0));
  if (std::abs(stackAt_ - here) > STACK_LIMIT) throw LimitReached();
  constexpr qpdf_offset_t FARTHEST = std::numeric_limits<qpdf_offset_t>::max();
  const std::int64_t from = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? position_ : file_.size();
  if (offset < -from || offset > FARTHEST - from) throw LimitReached();
  position_ = from + offset;
  if (origin == SEEK_SET && MayBeStream(position_)) CheckObjectAt(position_);
}

std::size_t GuardedInput::read(char* to, std::size_t count) {
  if (const auto stream = packed_.find(position_); stream != packed_.end() && pdf_.isEncrypted()) {
    MeasureEncrypted(packed_.extract(stream));
  }
  last_offset = position_;
  const std::size_t done = file_.ReadAt(position_, to, count);
  position_ += static_cast<std::int64_t>(done);
  return done;
}

void GuardedInput::SkipSpace(std::int64_t* at) {
  while (IsSpace(file_.ByteAt(*at))) ++*at;
}

// Most positions are inside an object, and most objects are no streams. This finds that out much
// faster. True when it cannot be sure.
bool GuardedInput::MayBeStream(std::int64_t at) {
  for (int number = 0; number < 2; ++number) {
    SkipSpace(&at);
    int c = file_.ByteAt(at);
    if (c == '%') return true;
    if (c == '+' || c == '-') c = file_.ByteAt(++at);
    if (!IsDigit(c)) return false;
    while (IsDigit(c)) c = file_.ByteAt(++at);
  }
  SkipSpace(&at);
  for (const char c : {'o', 'b', 'j'}) {
    if (file_.ByteAt(at) == '%') return true;
    if (file_.ByteAt(at++) != c) return false;
  }
  SkipSpace(&at);
  if (file_.ByteAt(at) != '<' || file_.ByteAt(at + 1) != '<') return true;
  at += 2;
  for (Nesting open('<'); open.depth() > 0; ++at) {
    const int c = file_.ByteAt(at);
    if (c < 0 || std::strchr("(){}%", c) != nullptr) return true;
    if (c == '<' || c == '>') {
      if (file_.ByteAt(++at) != c) return true;
      c == '<' ? open.Open('<') : open.Close('<');
    } else if (c == '[') {
      open.Open('[');
    } else if (c == ']') {
      open.Close('[');
    }
  }
  SkipSpace(&at);
  const int c = file_.ByteAt(at);
  return c == 's' || c == '%';
}

void GuardedInput::CheckObjectAt(std::int64_t offset) {
  Object object(file_, offset);
  if (!object.ReachStreamData()) return;
  if (!object.IsPacked()) {
    if (object.length() < 0) throw LimitReached();
    CountUnpacked(object.length());
    return;
  }
  packed_.insert_or_assign(object.at(), object.Id());
  // What is encrypted cannot be unpacked yet.
  if (!pdf_.isEncrypted()) Measure(object.at());
}

void GuardedInput::Measure(std::int64_t dataAt) {
  Inflater inflater;
  std::array<char, 4096> packed;
  std::array<unsigned char, 16384> unpacked;
  for (std::int64_t at = dataAt; !inflater.IsAtEnd();) {
    if (inflater->avail_in == 0) {
      const std::size_t count = file_.ReadAt(at, packed.data(), packed.size());
      if (count == 0) return;
      at += static_cast<std::int64_t>(count);
      inflater->next_in = reinterpret_cast<unsigned char*>(packed.data());
      inflater->avail_in = static_cast<uInt>(count);
    }
    CountUnpacked(inflater.Unpack(unpacked));
  }
}

void GuardedInput::MeasureEncrypted(const Packed::node_type& stream) {
  QPDFObjectHandle object = pdf_.getObject(stream.mapped());
  if (!object.isStream() || object.getParsedOffset() != stream.key()) throw LimitReached();
  Counter counter(UNPACKED_LIMIT - unpacked_);
  object.pipeStreamData(&counter, 0, qpdf_dl_specialized, true);
  CountUnpacked(counter.count());
  position_ = stream.key();
}

void GuardedInput::CountUnpacked(std::int64_t bytes) {
  unpacked_ += bytes;
  if (unpacked_ > UNPACKED_LIMIT) throw LimitReached();
}

}  // namespace pdf_import
