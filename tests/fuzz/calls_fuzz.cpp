// Calls of all methods, one after the other on shared objects, and a host that does what it must not from inside a
// yield: it moves the cursor, re-initialises, destroys, renames, removes and lets go of the objects in use, and calls
// again.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "orvex/data/host_events.h"
#include "orvex/kernels/kernels.h"
#include "tests/support/calls.h"

namespace {

using orvex::test::Choices;
using orvex::test::World;
namespace catalogue = orvex::catalogue;
namespace kernels = orvex::kernels;
using kernels::Level;

/// A host with everything that it holds.
class Host {
 public:
  explicit Host(Choices choices) : choices_(choices), world_(orvex::test::makeWorld(choices_)) {}
  ~Host() {
    orvex::setYieldHook({});
    // A set and a database that hold each other are the host's to part.
    for (const auto& set : sets_) set->setDatabase(nullptr);
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void run() {
    kernels::setLevel(choices_.of<Level>({Level::Off, Level::Baseline, Level::Avx2, Level::Avx512}));
    orvex::setYieldHook({[](void* self) { static_cast<Host*>(self)->misbehave(); }, this});
    for (int calls = 0; calls < 8 && !choices_.exhausted(); ++calls) callOne();
  }

 private:
  void callOne() {
    const auto classes = catalogue::classes();
    const catalogue::Class& owner = *classes[choices_.below(classes.size())];
    const catalogue::Method& method = *owner.methods[choices_.below(owner.methods.size())];
    orvex::test::Call call = orvex::test::makeCall(choices_, world_, owner, method);
    const std::shared_ptr<void> object = orvex::test::objectOf(choices_, world_, owner);
    if (world_.prices != nullptr) sets_.push_back(world_.prices);
    try {
      const catalogue::Value result = catalogue::call(method, object.get(), call.arguments);
      if (!owner.holdsState) requireFinite(result);
    } catch (const orvex::Error& error) {
      if (error.source().empty() && error.description().empty()) std::abort();
    }
  }

  void misbehave() {
    if (depth_ > 2 || choices_.exhausted()) return;
    ++depth_;
    try {
      const auto field = choices_.of(world_.fields);
      switch (choices_.below(40)) {
        case 0:
          if (world_.data != nullptr) world_.data->setPosition(static_cast<int>(choices_.below(70)));
          break;
        case 1:
          if (field != nullptr) field->initialize(static_cast<int>(choices_.below(400)), "again");
          break;
        case 2:
          if (field != nullptr) field->destroy();
          break;
        case 3:
          if (field != nullptr) field->setName("Low");
          break;
        case 4:
          if (world_.prices != nullptr) world_.prices->removeField("High");
          break;
        case 5:
          if (world_.data != nullptr) world_.data->OpenDatabaseByArray(std::vector<double>(choices_.below(100), 1.5));
          break;
        case 6:
          world_.data = nullptr;
          break;
        case 7:
          world_.prices = nullptr;
          break;
        case 8:
          world_.fields = {nullptr};
          break;
        case 9:
          callOne();
          break;
        case 10:
          throw std::bad_alloc();
        default:
          break;
      }
    } catch (const orvex::Error&) {
      // The host's own mistakes stay with it.
    }
    --depth_;
  }

  static void requireFinite(const catalogue::Value& result) {
    const auto* set = std::get_if<std::shared_ptr<orvex::RecordSet>>(&result);
    if (set == nullptr || *set == nullptr) return;
    for (int i = 1; i <= (*set)->getFieldCount(); ++i) {
      for (const double value : (*set)->getField((*set)->getName(i))->values()) {
        if (!std::isfinite(value)) std::abort();
      }
    }
  }

  Choices choices_;
  World world_;
  std::vector<std::shared_ptr<orvex::RecordSet>> sets_;
  int depth_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Host(Choices(std::span(bytes, size))).run();
  return 0;
}
