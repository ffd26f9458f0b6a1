#include "cli/input_list.h"

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "cli/shown_text.h"
#include "salvage/batch_inputs.h"

namespace zelvo::cli {

namespace {

constexpr std::size_t kMaxListedPath = 4096;

struct CloseList {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

}  // namespace

bool InputList::keep() {
  ++lines_;
  if (open_.size() >= kMaxListedPath || open_.find('\0') != std::string::npos) return false;
  if (!open_.empty()) paths_.push_back(std::exchange(open_, {}));
  return paths_.size() <= salvage::kMaxBatchFilms;
}

bool InputList::add(std::string_view text) {
  for (std::size_t end = text.find(separator_); end != std::string_view::npos; end = text.find(separator_)) {
    open_ += text.substr(0, end);
    text.remove_prefix(end + 1);
    if (!keep()) return false;
  }
  open_ += text;
  return open_.size() < kMaxListedPath || keep();
}

bool InputList::finish() { return open_.empty() || keep(); }

std::variant<std::vector<std::string>, std::string> readInputList(const std::string& path, char separator) {
  const std::string name = path == "-" ? "standard input" : printable(path);
  const auto failed = [&] {
    return name + " cannot be read: " + std::error_code(errno, std::generic_category()).message() + ".";
  };
  const std::unique_ptr<std::FILE, CloseList> file(path == "-" ? stdin : std::fopen(path.c_str(), "re"));
  if (!file) return failed();
  InputList list(separator);
  std::array<char, 16384> piece;
  bool isList = true;
  for (;;) {
    errno = 0;
    const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get());
    isList = isList && list.add({piece.data(), count});
    if (count < piece.size() || !isList) break;
  }
  if (std::ferror(file.get()) != 0) return failed();
  if (isList && list.finish()) return list.take();
  return name + " is no list of paths: line " + shownNumber(list.lines()) +
         " is too long, holds a zero byte (give -0 when zeros end the paths), or is one too many.";
}

}  // namespace zelvo::cli
