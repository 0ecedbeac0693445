// A client in the multithreaded apartment, where the programs of many languages live: all its calls cross to the
// apartment of the server's objects. Ends with 7 if all is well.
#include <cstdio>

#include "Orvex.h"
#include "orvex/automation/errors.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

namespace orvex::test {
namespace {

int failures = 0;

void expect(bool right, const char* what) {
  if (right) return;
  std::printf("FAILED: %s\n", what);
  ++failures;
}

template <class I>
Ref<I> create(const catalogue::Class& described) {
  Ref<I> object;
  const HRESULT outcome = CoCreateInstance(automation::guidOf(described.classId), nullptr, CLSCTX_INPROC_SERVER,
                                           __uuidof(I), reinterpret_cast<void**>(object.put()));
  if (FAILED(outcome)) std::printf("%s: 0x%08lx\n", described.name.data(), static_cast<unsigned long>(outcome));
  return object;
}

void run(const std::string& prices) {
  auto data = create<_Database>(catalogue::classOf<Database>);
  const auto average = create<_MovingAverage>(catalogue::classOf<MovingAverage>);
  expect(data.get() != nullptr && average.get() != nullptr, "objects are created");
  if (failures != 0) return;
  Text file(prices);
  Text delimiter(",");
  expect(data->OpenDataBase(&file, &delimiter) == S_OK, "a file is loaded");
  Ref<_RecordSet> set;
  expect(data->getRecordset(set.put()) == S_OK, "a set is returned");
  if (set.get() == nullptr) return;
  Text name("Close");
  Ref<_Field> close;
  Ref<_Field> again;
  set->getField(&name, close.put());
  set->getField(&name, again.put());
  expect(close.get() != nullptr && close.as<IUnknown>().get() == again.as<IUnknown>().get(),
         "an object keeps its identity");
  Ref<_RecordSet> result;
  short periods = 3;
  Text alias;
  expect(average->SimpleMovingAverage(data.byRef(), close.byRef(), &periods, &alias, result.put()) == S_OK, "a call");
  expect(alias.get() == "SimpleMovingAverage", "what is written back");
  double computed = 0;
  double sum = 0;
  for (short row = 4; row >= 2; --row) {
    double price = 0;
    close->getValue(&row, &price);
    sum += price;
  }
  short row = 4;
  expect(result.get() != nullptr && result->getValue(&alias, &row, &computed) == S_OK && computed == sum / 3,
         "its value");
  periods = 0;
  // Only the number: not every system carries the texts across.
  expect(average->SimpleMovingAverage(data.byRef(), close.byRef(), &periods, &alias, result.put()) ==
             automation::resultOf(MovingAverage::SimpleMovingAverageFault),
         "its error");
}

}  // namespace
}  // namespace orvex::test

int main(int count, char** words) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  orvex::test::run(count > 1 ? words[1] : "prices.csv");
  CoUninitialize();
  return orvex::test::failures == 0 ? 7 : 1;
}
