#pragma once

#include <string>
#include <utility>

namespace varpre {

// While it lives, what is written to the listing or the store file is dropped.
template <class File>
class Dropped {
 public:
  explicit Dropped(File& file)
      : file_(file),
        kept_(std::exchange(file.text, {})),
        dropped_before_(std::exchange(file.dropping, true)) {}
  ~Dropped() {
    file_.text = std::move(kept_);
    file_.dropping = dropped_before_;
  }
  Dropped(const Dropped&) = delete;
  Dropped& operator=(const Dropped&) = delete;
  Dropped(Dropped&&) = delete;
  Dropped& operator=(Dropped&&) = delete;

 private:
  File& file_;
  std::string kept_;
  bool dropped_before_;
};

}  // namespace varpre
