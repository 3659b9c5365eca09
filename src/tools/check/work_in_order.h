#pragma once

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace varpre {

// Pieces of work, numbered from 0, done on some threads, whose results are handed out in the order of their
// numbers. There are as many threads as can be had; without any, the work is done when its result is asked
// for. A piece for which memory does not suffice is done again when fewer threads are at work, and each time
// there is one less; the last one hands out the result as it is.
//
// `Result work(std::size_t)` must not throw; `no_memory` of a result says that memory did not suffice.
template <class Result, class Work>
class WorkInOrder {
 public:
  WorkInOrder(std::size_t pieces, std::size_t threads, Work work)
      : work_(std::move(work)), results_(pieces), window_(pieces_ahead * threads) {
    again_.reserve(std::min(threads, pieces));  // each thread puts back one piece at most
    for (std::size_t i = 0; i < std::min(threads, pieces) && start_thread(); ++i) {
    }
  }
  ~WorkInOrder() {
    {
      const std::lock_guard lock(mutex_);
      begun_ = results_.size();
      again_.clear();
      handed_out_ = results_.size();
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  WorkInOrder(const WorkInOrder&) = delete;
  WorkInOrder& operator=(const WorkInOrder&) = delete;

  Result next() {
    std::unique_lock lock(mutex_);
    const std::size_t i = handed_out_;
    if (threads_.empty()) {
      ++handed_out_;
      return work_(i);
    }
    changed_.wait(lock, [&] { return results_[i].has_value(); });
    Result taken = std::move(*results_[i]);
    results_[i].reset();
    ++handed_out_;
    changed_.notify_all();
    return taken;
  }

 private:
  static constexpr std::size_t pieces_ahead = 16;  // of the one that is waited for, for each thread

  bool start_thread() {
    try {
      threads_.reserve(threads_.size() + 1);
      const std::lock_guard lock(mutex_);
      threads_.emplace_back([this] { do_pieces(); });
      ++at_work_;
      return true;
    } catch (const std::system_error&) {
    } catch (const std::bad_alloc&) {
    }
    return false;
  }

  // The next piece that is due, none when all have been begun.
  std::optional<std::size_t> begin_piece(std::unique_lock<std::mutex>& lock) {
    changed_.wait(
        lock, [&] { return !again_.empty() || begun_ == results_.size() || begun_ < handed_out_ + window_; });
    if (again_.empty()) return begun_ < results_.size() ? std::optional(begun_++) : std::nullopt;
    const std::size_t i = again_.back();
    again_.pop_back();
    return i;
  }

  void do_pieces() {
    std::unique_lock lock(mutex_);
    while (const std::optional<std::size_t> i = begin_piece(lock)) {
      lock.unlock();
      Result result = work_(*i);
      lock.lock();
      if (result.no_memory && at_work_ > 1) {
        again_.push_back(*i);
        break;
      }
      results_[*i] = std::move(result);
      changed_.notify_all();
    }
    --at_work_;
    changed_.notify_all();
  }

  Work work_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::optional<Result>> results_;
  std::size_t window_;
  std::size_t begun_ = 0;
  std::size_t handed_out_ = 0;
  std::vector<std::size_t> again_;  // pieces that were begun and are to be done again
  std::size_t at_work_ = 0;         // threads
  std::vector<std::thread> threads_;
};

}  // namespace varpre
