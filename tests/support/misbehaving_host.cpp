#include "tests/support/misbehaving_host.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <vector>

#include "orvex/data/host_events.h"
#include "orvex/data/object.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS::test {

namespace {

void requireFinite(const catalogue::Value& result) {
  const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&result);
  if (set == nullptr || *set == nullptr) return;
  for (int i = 1; i <= (*set)->getFieldCount(); ++i) {
    for (const double value : (*set)->getField((*set)->getName(i))->values()) {
      if (!std::isfinite(value)) std::abort();
    }
  }
}

class MisbehavingHost {
 public:
  explicit MisbehavingHost(const Choices& choices) : choices_(choices), world_(makeWorld(choices_)) {}
  ~MisbehavingHost() {
    setYieldHook({});
    // A set and a database that hold each other are the host's to part.
    for (const auto& set : sets_) set->setDatabase(nullptr);
  }
  MisbehavingHost(const MisbehavingHost&) = delete;
  MisbehavingHost& operator=(const MisbehavingHost&) = delete;

  int run() {
    using kernels::Level;
    kernels::setLevel(choices_.of<Level>({Level::Off, Level::Baseline, Level::Avx2, Level::Avx2Fma, Level::Avx512}));
    setYieldHook({[](void* self) { static_cast<MisbehavingHost*>(self)->misbehave(); }, this});
    for (int i = 0; i < 8 && !choices_.exhausted(); ++i) callOne();
    return calls_;
  }

 private:
  void callOne() {
    ++calls_;
    const auto classes = catalogue::classes();
    const catalogue::Class& owner = *classes[choices_.below(classes.size())];
    const catalogue::Method& method = *owner.methods[choices_.below(owner.methods.size())];
    Call call = makeCall(choices_, world_, owner, method);
    const std::shared_ptr<void> object = objectOf(choices_, world_, owner);
    if (world_.prices != nullptr) sets_.push_back(world_.prices);
    try {
      const catalogue::Value result = catalogue::call(method, object.get(), call.arguments);
      if (!owner.holdsState) requireFinite(result);
    } catch (const Error& error) {
      if (error.source().empty() && error.description().empty()) std::abort();
    }
  }

  void misbehave() {
    if (depth_ > 2 || choices_.exhausted()) return;
    const auto field = choices_.of(world_.fields);
    const std::function<void()> deeds[] = {
        [&] { object(world_.data).setPosition(static_cast<int>(choices_.below(70))); },
        [&] { object(field).initialize(static_cast<int>(choices_.below(400)), "again"); },
        [&] { object(field).destroy(); },
        [&] { object(field).setName("Low"); },
        [&] { object(world_.prices).removeField("High"); },
        [&] { object(world_.data).OpenDatabaseByArray(std::vector<double>(choices_.below(100), 1.5)); },
        [&] { world_.data = nullptr; },
        [&] { world_.prices = nullptr; },
        [&] { world_.fields = {nullptr}; },
        [&] { callOne(); },
        [] { throw std::bad_alloc(); },
        [&] { object(world_.data).OpenDataBase(ORVEX_SOURCE_DIR "/examples/prices.csv", ","); },
    };
    const std::size_t chosen = choices_.below(40);
    if (chosen >= std::size(deeds)) return;
    ++depth_;
    try {
      deeds[chosen]();
    } catch (const Error&) {
      // The host's own mistakes stay with it, objects that are gone among them.
    } catch (...) {
      --depth_;
      throw;
    }
    --depth_;
  }

  Choices choices_;
  World world_;
  std::vector<std::shared_ptr<RecordSet>> sets_;
  int depth_ = 0;
  int calls_ = 0;
};

}  // namespace

int runMisbehavingHost(const Choices& choices) {
  return MisbehavingHost(choices).run();
}

}  // namespace orvex::inline ORVEX_COUNTS::test
