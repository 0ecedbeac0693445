// What the boundary of the automation server costs: multiples of a call that does nothing, in the same run.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <thread>

#include "Orvex.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

namespace orvex::test {
namespace {

/// A server whose every method does nothing.
class Nothing : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return S_OK;
  }
};

/// Nanoseconds a call, of the fastest of some rounds.
template <class Call>
double cost(int calls, Call&& call) {
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < 7; ++round) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < calls; ++i) call();
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    best = std::min(best, taken.count() / calls);
  }
  return best;
}

void print(const char* what, double nanoseconds, const char* unit, double ofUnit) {
  std::printf("%-56s %12.1f ns %8.2f x %s\n", what, nanoseconds, nanoseconds / ofUnit, unit);
}

/// A column of 32,766 values, the most that an average can walk.
Variant longArray() {
  constexpr LONG count = 32766;
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 1, count);
  for (LONG i = 0; i < count; ++i) static_cast<double*>(array->pvData)[i] = 100 + i % 97 * 0.25;
  return {VT_R8, array};
}

void measure() {
  const auto& server = Server::get();
  auto data = server.create<_Database>(catalogue::classOf<Database>);
  const auto average = server.create(catalogue::classOf<MovingAverage>);
  Variant values = longArray();
  data->OpenDatabaseByArray(&values);
  Ref<_RecordSet> set;
  Ref<_Field> field;
  Text name("Close");
  data->getRecordset(set.put());
  set->getField(&name, field.put());

  Nothing nothing;
  IDispatch* volatile empty = &nothing;
  const double emptyCall = cost(5000000, [&] { empty->AddRef(); });
  print("empty call through a virtual table", emptyCall, "an empty call", emptyCall);
  short row = 7;
  double value = 0;
  _Field* volatile early = field.get();
  print("Field.getValue, bound early", cost(5000000, [&] { early->getValue(&row, &value); }), "an empty call",
        emptyCall);

  VARIANT argument = Variant(static_cast<short>(7));
  DISPPARAMS one{&argument, nullptr, 1, 0};
  VARIANT result{};
  const auto late = [&](IDispatch* object, DISPID id, DISPPARAMS& parameters) {
    object->Invoke(id, IID_NULL, 1033, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
  };
  const double emptyInvoke = cost(2000000, [&] { late(empty, 1, one); });
  print("empty Invoke", emptyInvoke, "an empty Invoke", emptyInvoke);
  const DISPID getValue = idOf(field.get(), "getValue");
  print("Field.getValue, bound late", cost(500000, [&] { late(field.get(), getValue, one); }), "an empty Invoke",
        emptyInvoke);
  print("GetIDsOfNames of getValue", cost(500000, [&] { idOf(field.get(), "getValue"); }), "an empty Invoke",
        emptyInvoke);
  print("GetTypeInfo",
        cost(1000,
             [&] {
               Ref<ITypeInfo> info;
               field->GetTypeInfo(0, 1033, info.put());
             }),
        "an empty Invoke", emptyInvoke);

  const double copy = cost(300, [&] {
    SAFEARRAY* copied = nullptr;
    SafeArrayCopy(values.parray, &copied);
    SafeArrayDestroy(copied);
  });
  print("SafeArrayCopy of 32,766 doubles", copy, "a copy", copy);
  print("Field.getDoubleArray of 32,766 values",
        cost(300,
             [&] {
               Variant array;
               field->getDoubleArray(&array);
             }),
        "a copy", copy);

  const DISPID simple = idOf(average.get(), "SimpleMovingAverage");
  const auto mean = [&] { invoke(average.get(), simple, {data, field, 20}); };
  // A thread that no object was created on has no message pump.
  double plain = 0;
  std::thread([&] { plain = cost(20, mean); }).join();
  print("SimpleMovingAverage of 32,766 records, late, no pump", plain, "itself", plain);
  print("the same with the message pump", cost(20, mean), "that without", plain);
}

}  // namespace
}  // namespace orvex::test

int main() {
  orvex::test::measure();
}
