#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include "native/computation.h"

/// The same calls for many symbols whose rows stand in one table, on several threads.
namespace orvex::python {

/// Which rows belong together: group g has the rows order[i] (i itself where there is no order) for
/// offsets[g] <= i < offsets[g + 1].
struct Groups {
  std::span<const std::int64_t> order;
  std::span<const std::int64_t> offsets;

  std::size_t count() const { return offsets.size() - 1; }
};

/// Puts the rows of each code together, each code's in the order of the table. A code below 0 belongs to no group.
/// Returns the offsets; `order` gets the rows, and stays empty where they stand together already.
std::vector<std::int64_t> groupRows(std::span<const std::int64_t> codes, std::size_t groups,
                                    std::vector<std::int64_t>& order);

/// A request for each group, with where its results go: a column of the whole table for each column of the method.
struct Study {
  Request request;  // on the columns of the whole table
  std::vector<double*> results;
};

struct Failure {
  std::size_t group;
  std::size_t study;
  Refusal refusal;  // its record numbers count within the group
};

/// Makes every study for every group, on threads of its own until it is done, stopped or destroyed. What it was made
/// with stands still until then.
class GroupRun {
 public:
  GroupRun(std::span<const Study> studies, Groups groups, std::size_t threads);
  ~GroupRun() { stop(); }
  GroupRun(const GroupRun&) = delete;
  GroupRun& operator=(const GroupRun&) = delete;

  /// True when all is done, false after that time.
  bool waitFor(std::chrono::milliseconds time);
  std::size_t groupsDone() const { return done_; }
  /// Ends the threads as soon as they notice: between two calls, and within long ones.
  void stop();
  /// What could not be computed, by group and study: its rows are NaN. REQUIRES: all is done.
  std::vector<Failure> failures();

 private:
  void work();
  class Worker;

  std::span<const Study> studies_;
  Groups groups_;
  std::vector<const double*> columns_;  // each once that a study reads
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> done_ = 0;
  std::atomic<bool> stopped_ = false;
  std::mutex mutex_;
  std::condition_variable finished_;
  std::size_t running_ = 0;
  std::vector<Failure> failures_;
  std::exception_ptr fault_;  // memory that ran out, say
  std::vector<std::thread> threads_;
};

}  // namespace orvex::python
