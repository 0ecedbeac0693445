// Compiled once for each width.
#include "tests/widths/outcome.h"

#include "tests/support/calls.h"

namespace {

int overflows = 0;

}  // namespace

/// The linker puts it in front of `raise`, so that overflows are seen that a method reports in words of its own.
#if ORVEX_COUNT_BITS == 16
#define ORVEX_RAISE(prefix) prefix##_ZN5orvex8counts165raiseERKNS0_5FaultE
#else
#define ORVEX_RAISE(prefix) prefix##_ZN5orvex8counts325raiseERKNS0_5FaultE
#endif
extern "C" [[noreturn]] void ORVEX_RAISE(__real_)(const orvex::Fault& fault);  // NOLINT(bugprone-reserved-identifier)
extern "C" [[noreturn]] void ORVEX_RAISE(__wrap_)(const orvex::Fault& fault);  // NOLINT(bugprone-reserved-identifier)
extern "C" void ORVEX_RAISE(__wrap_)(const orvex::Fault& fault) {              // NOLINT(bugprone-reserved-identifier)
  if (fault == orvex::faults::Overflow) ++overflows;
  ORVEX_RAISE(__real_)(fault);
}

namespace widths {

#if ORVEX_COUNT_BITS == 16
std::vector<std::string> calculations() {
  std::vector<std::string> names;
  for (const orvex::catalogue::Class* owner : orvex::catalogue::classes()) {
    for (const orvex::catalogue::Method* method : owner->methods) {
      if (owner->holdsState || method->kind != orvex::catalogue::Kind::Method) continue;
      names.push_back(std::string(owner->name).append(".").append(method->name));
    }
  }
  return names;
}
#endif

Call ORVEX_COUNTS::call(const std::string& method, const std::vector<std::uint8_t>& bytes, int count) {
  using namespace orvex;
  const std::size_t dot = method.find('.');
  const catalogue::Class& owner = *catalogue::findClass(method.substr(0, dot));
  const catalogue::Method& called = *catalogue::findMethod(owner, method.substr(dot + 1));
  const test::RandomCall random(test::Choices(bytes, false), owner, called, count);
  overflows = 0;
  const test::Outcome outcome = random.run();
  Call made{{"", outcome.columns, outcome.other, outcome.written, outcome.position}, random.describe(), overflows};
  if (outcome.fault) {
    made.outcome.fault = std::to_string(outcome.fault->number)
                             .append(" ")
                             .append(outcome.fault->source)
                             .append(" ")
                             .append(outcome.fault->description);
  }
  return made;
}

}  // namespace widths
