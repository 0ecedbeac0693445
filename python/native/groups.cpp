#include "native/groups.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "orvex/data/host_events.h"

namespace orvex::python {

namespace {

/// Groups longer than this ask once a record whether to stop, which costs a few nanoseconds each; a shorter one is
/// over before anybody waits for it.
constexpr std::size_t LongGroup = 200'000;

/// Runs `see` on every column of a request.
template <class See>
void eachColumn(Request& request, See&& see) {
  for (std::size_t i = 0; i < request.function->method->arguments.size(); ++i) {
    if (request.function->method->arguments[i].type == catalogue::Type::Field) see(request.columns[i]);
  }
  for (auto& price : request.prices) {
    if (price) see(*price);
  }
}

}  // namespace

std::vector<std::int64_t> groupRows(std::span<const std::int64_t> codes, std::size_t groups,
                                    std::vector<std::int64_t>& order) {
  std::vector<std::int64_t> offsets(groups + 1);
  bool together = true;
  std::int64_t before = 0;
  for (const std::int64_t code : codes) {
    together = together && code >= before;
    before = code;
    if (code >= 0) ++offsets[static_cast<std::size_t>(code) + 1];
  }
  for (std::size_t g = 0; g < groups; ++g) offsets[g + 1] += offsets[g];
  if (together) return offsets;
  std::vector<std::int64_t> next(offsets.begin(), offsets.end() - 1);
  order.resize(static_cast<std::size_t>(offsets.back()));
  for (std::size_t row = 0; row < codes.size(); ++row) {
    if (codes[row] < 0) continue;
    order[static_cast<std::size_t>(next[static_cast<std::size_t>(codes[row])]++)] = static_cast<std::int64_t>(row);
  }
  return offsets;
}

/// One thread's share: takes group after group.
class GroupRun::Worker {
 public:
  explicit Worker(GroupRun& run) : run_(run), gathered_(run.columns_.size()) {}

  void take(std::size_t group) {
    const auto first = static_cast<std::size_t>(run_.groups_.offsets[group]);
    const auto count = static_cast<std::size_t>(run_.groups_.offsets[group + 1]) - first;
    if (!run_.groups_.order.empty()) gather(first, count);
    if (count >= LongGroup) setYieldHook({&stopWhenAsked, &run_});
    for (std::size_t study = 0; study < run_.studies_.size() && !run_.stopped_; ++study) {
      make(group, study, first, count);
    }
    setYieldHook({});
  }

 private:
  struct Stopped {};

  static void stopWhenAsked(void* run) {
    if (static_cast<GroupRun*>(run)->stopped_.load(std::memory_order_relaxed)) throw Stopped{};
  }

  void gather(std::size_t first, std::size_t count) {
    for (std::size_t c = 0; c < gathered_.size(); ++c) {
      gathered_[c].resize(count);
      const double* column = run_.columns_[c];
      for (std::size_t i = 0; i < count; ++i) gathered_[c][i] = column[run_.groups_.order[first + i]];
    }
  }

  void make(std::size_t group, std::size_t place, std::size_t first, std::size_t count) {
    const Study& study = run_.studies_[place];
    Request request = study.request;
    request.count = count;
    eachColumn(request, [&](Span& column) {
      if (run_.groups_.order.empty()) {
        column = column.subspan(first, count);
      } else {
        const auto found = std::ranges::find(run_.columns_, column.data());
        column = gathered_[static_cast<std::size_t>(found - run_.columns_.begin())];
      }
    });
    try {
      const Result result = compute(std::move(request));
      for (std::size_t c = 0; c < study.results.size(); ++c) {
        spread(result.columns[c].rows.values, study.results[c], first);
      }
    } catch (const Refusal& refusal) {
      for (double* results : study.results) erase(results, first, count);
      const std::lock_guard lock(run_.mutex_);
      run_.failures_.push_back({group, place, refusal});
    }
  }

  void spread(Span rows, double* results, std::size_t first) const {
    if (run_.groups_.order.empty()) {
      std::ranges::copy(rows, results + first);
    } else {
      for (std::size_t i = 0; i < rows.size(); ++i) results[run_.groups_.order[first + i]] = rows[i];
    }
  }

  void erase(double* results, std::size_t first, std::size_t count) const {
    for (std::size_t i = first; i < first + count; ++i) {
      const std::size_t row = run_.groups_.order.empty() ? i : static_cast<std::size_t>(run_.groups_.order[i]);
      results[row] = std::numeric_limits<double>::quiet_NaN();
    }
  }

  GroupRun& run_;
  std::vector<std::vector<double>> gathered_;
};

GroupRun::GroupRun(std::span<const Study> studies, Groups groups, std::size_t threads)
    : studies_(studies), groups_(groups) {
  for (const Study& study : studies) {
    Request request = study.request;
    eachColumn(request, [&](Span& column) {
      if (std::ranges::find(columns_, column.data()) == columns_.end()) columns_.push_back(column.data());
    });
  }
  running_ = std::clamp<std::size_t>(groups.count(), 1, threads);
  threads_.reserve(running_);
  try {
    for (std::size_t i = running_; i > 0; --i) threads_.emplace_back([this] { work(); });
  } catch (...) {
    stop();
    throw;
  }
}

void GroupRun::work() {
  try {
    Worker worker(*this);
    for (std::size_t group = next_++; group < groups_.count() && !stopped_; group = next_++) {
      worker.take(group);
      ++done_;
    }
  } catch (...) {
    const std::lock_guard lock(mutex_);
    fault_ = std::current_exception();
    stopped_ = true;
  }
  const std::lock_guard lock(mutex_);
  if (--running_ == 0) finished_.notify_all();
}

bool GroupRun::waitFor(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return finished_.wait_for(lock, time, [&] { return running_ == 0; });
}

void GroupRun::stop() {
  stopped_ = true;
  for (std::thread& thread : threads_) {
    if (thread.joinable()) thread.join();
  }
}

std::vector<Failure> GroupRun::failures() {
  if (fault_) std::rethrow_exception(fault_);
  std::ranges::sort(failures_, {}, [](const Failure& one) { return std::pair(one.group, one.study); });
  return std::move(failures_);
}

}  // namespace orvex::python
