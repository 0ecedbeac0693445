#include <gtest/gtest.h>

#include <atomic>

#include "Orvex.h"
#include "orvex/automation/floating_point.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

/// A program that is compiled with the generated header.
namespace orvex::test {
namespace {

using automation::FloatingPoint;

/// An object of another server: it knows nothing but IDispatch.
class Foreign final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    *result = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  ULONG references = 1;
};

class EarlyBinding : public ::testing::Test {
 public:
  Ref<_Database> data = Server::get().create<_Database>(catalogue::classOf<Database>);
  Ref<_MovingAverage> average = Server::get().create<_MovingAverage>(catalogue::classOf<MovingAverage>);
  Ref<_RecordSet> prices;
  Ref<_Field> close;
  short periods = 3;

  void SetUp() override {
    Text file(ORVEX_SOURCE_DIR "/examples/prices.csv");
    Text delimiter(",");
    ASSERT_EQ(data->OpenDataBase(&file, &delimiter), S_OK);
    ASSERT_EQ(data->getRecordset(prices.put()), S_OK);
    Text name("close");
    ASSERT_EQ(prices->getField(&name, close.put()), S_OK);
  }

  Outcome mean(_RecordSet** result) {
    Text alias;
    return early(average->SimpleMovingAverage(data.byRef(), close.byRef(), &periods, &alias, result));
  }

  static double third(_RecordSet* set) {
    short row = 4;
    double value = 0;
    Text name("SimpleMovingAverage");
    EXPECT_EQ(set->getValue(&name, &row, &value), S_OK);
    return value;
  }
};

TEST_F(EarlyBinding, ComputesAndReportsErrors) {
  Ref<_RecordSet> set;
  EXPECT_EQ(mean(set.put()).code, S_OK);
  // Of the closes 55.69, 55.62 and 56.25 of the sample file.
  double closes[3];
  for (short row = 2; row <= 4; ++row) ASSERT_EQ(close->getValue(&row, &closes[row - 2]), S_OK);
  EXPECT_EQ(third(set.get()), (closes[2] + closes[1] + closes[0]) / 3);

  periods = 0;
  const Outcome failed = mean(set.put());
  EXPECT_EQ(static_cast<unsigned long>(failed.code), 0x800A0451ul);
  EXPECT_TRUE(failed.is(MovingAverage::SimpleMovingAverageFault)) << failed;
  EXPECT_EQ(set.get(), nullptr);
  const auto support = average.as<ISupportErrorInfo>();
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_MovingAverage)), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(_Field)), S_FALSE);
  EXPECT_EQ(support.as<IUnknown>().get(), average.as<IUnknown>().get());
}

TEST_F(EarlyBinding, SurvivesMisuse) {
  Foreign foreign;
  IDispatch* stranger = &foreign;
  Ref<_RecordSet> set;
  EXPECT_TRUE(early(average->SimpleMovingAverage(data.byRef(), reinterpret_cast<_Field**>(&stranger), &periods, nullptr,
                                                 set.put()))
                  .is(faults::TypeMismatch));
  EXPECT_TRUE(invoke(average, "SimpleMovingAverage", {data, stranger, 3}).is(faults::TypeMismatch));
  auto* wrongClass = reinterpret_cast<_Field*>(data.get());
  EXPECT_TRUE(early(average->SimpleMovingAverage(data.byRef(), &wrongClass, &periods, nullptr, set.put()))
                  .is(faults::TypeMismatch));
  EXPECT_EQ(foreign.references, 1u);

  EXPECT_TRUE(early(average->SimpleMovingAverage(data.byRef(), close.byRef(), nullptr, nullptr, set.put()))
                  .is(faults::InvalidCall));
  EXPECT_EQ(average->SimpleMovingAverage(data.byRef(), close.byRef(), &periods, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(average->SimpleMovingAverage(data.byRef(), close.byRef(), &periods, nullptr, set.put()), S_OK);

  void* nothing = &foreign;
  EXPECT_EQ(average->QueryInterface(IID_IPersist, &nothing), E_NOINTERFACE);
  EXPECT_EQ(nothing, nullptr);
  const auto factory = Server::get().factory(automation::guidOf(catalogue::classOf<Field>.classId));
  EXPECT_EQ(factory->CreateInstance(stranger, IID_IUnknown, &nothing), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(Server::get().factory(IID_IUnknown).get(), nullptr);
}

TEST_F(EarlyBinding, CountsWhatKeepsTheServerLoaded) {
  data = Ref<_Database>();
  average = Ref<_MovingAverage>();
  prices = Ref<_RecordSet>();
  EXPECT_FALSE(Server::get().canUnload());
  close = Ref<_Field>();
  EXPECT_TRUE(Server::get().canUnload());
  auto factory = Server::get().factory(automation::guidOf(catalogue::classOf<Field>.classId));
  EXPECT_FALSE(Server::get().canUnload());
  factory->LockServer(TRUE);
  factory = Ref<IClassFactory>();
  EXPECT_FALSE(Server::get().canUnload());
  Server::get().factory(automation::guidOf(catalogue::classOf<Field>.classId))->LockServer(FALSE);
  EXPECT_TRUE(Server::get().canUnload());
}

TEST_F(EarlyBinding, ComputesTheSameForHostsThatComputeOtherwise) {
  Ref<_RecordSet> plain;
  ASSERT_EQ(mean(plain.put()).code, S_OK);
  const FloatingPoint usual = FloatingPoint::current();
  // Rounds up, flushes to zero, and lets every exception but the inexact result interrupt.
  const FloatingPoint odd{0xD000, 0x0B60};
  odd.apply();
  Ref<_RecordSet> set;
  const HRESULT computed = mean(set.put()).code;
  const FloatingPoint after = FloatingPoint::current();
  periods = 0;
  Ref<_RecordSet> none;
  const Outcome divided = mean(none.put());
  usual.apply();
  EXPECT_EQ(computed, S_OK);
  EXPECT_EQ(after.vector, odd.vector);
  EXPECT_EQ(after.stack, usual.stack == 0 ? 0 : odd.stack);
  EXPECT_EQ(third(set.get()), third(plain.get()));
  EXPECT_TRUE(divided.is(MovingAverage::SimpleMovingAverageFault)) << divided;
}

/// A window whose messages run host code in the middle of a call.
class EarlyBindingWithEvents : public EarlyBinding {
 public:
  using Handler = void (*)(EarlyBindingWithEvents&);

  void SetUp() override {
    EarlyBinding::SetUp();
    WNDCLASSW description{};
    description.lpfnWndProc = &EarlyBindingWithEvents::handle;
    description.lpszClassName = L"OrvexTest";
    RegisterClassW(&description);
    window_ = CreateWindowW(L"OrvexTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window_, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  void TearDown() override { DestroyWindow(window_); }

  void post(Handler handler) { PostMessageW(window_, WM_APP, 0, reinterpret_cast<LPARAM>(handler)); }

  int handled = 0;

 private:
  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_APP) return DefWindowProcW(window, message, first, second);
    auto& test = *reinterpret_cast<EarlyBindingWithEvents*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    ++test.handled;
    reinterpret_cast<Handler>(second)(test);
    return 0;
  }

  HWND window_ = nullptr;
};

TEST_F(EarlyBindingWithEvents, RunsTheHostsPendingEvents) {
  post([](EarlyBindingWithEvents&) {});
  // A call from inside an event, and an event from inside that.
  post([](EarlyBindingWithEvents& test) {
    test.post([](EarlyBindingWithEvents&) {});
    Ref<_RecordSet> inner;
    auto other = Server::get().create<_Database>(catalogue::classOf<Database>);
    Text file(ORVEX_SOURCE_DIR "/examples/prices.csv");
    Text delimiter(",");
    EXPECT_EQ(other->OpenDataBase(&file, &delimiter), S_OK);
  });
  Ref<_RecordSet> set;
  EXPECT_EQ(mean(set.put()).code, S_OK);
  EXPECT_EQ(handled, 3);

  PostQuitMessage(42);
  EXPECT_EQ(mean(set.put()).code, S_OK);
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 42u);
}

TEST_F(EarlyBindingWithEvents, SurvivesHostsThatTakeTheObjectsAway) {
  const Handler handlers[] = {
      [](EarlyBindingWithEvents& test) {
        Variant nothing;
        test.close->destroy(&nothing);
      },
      [](EarlyBindingWithEvents& test) {
        Text name("Close");
        short count = 2;
        Variant nothing;
        test.close->initialize(&count, &name, &nothing);
      },
      [](EarlyBindingWithEvents& test) {
        test.data->CloseDatabase();
        test.average = Ref<_MovingAverage>();
        test.data = Ref<_Database>();
        test.prices = Ref<_RecordSet>();
        test.close = Ref<_Field>();
      },
  };
  for (const Handler handler : handlers) {
    EarlyBinding::SetUp();
    average = Server::get().create<_MovingAverage>(catalogue::classOf<MovingAverage>);
    Ref<_RecordSet> set;
    post(handler);
    const Outcome outcome = mean(set.put());
    EXPECT_TRUE(outcome.code == S_OK || outcome.is(MovingAverage::SimpleMovingAverageFault)) << outcome;
  }
  EXPECT_EQ(handled, 3);
}

}  // namespace
}  // namespace orvex::test
