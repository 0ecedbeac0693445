#include <gtest/gtest.h>

#include <functional>

#include "Orvex.h"
#include "orvex/automation/errors.h"
#include "orvex/automation/floating_point.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

/// A program that is compiled with the generated header.
namespace orvex::test {
namespace {

using automation::FloatingPoint;

class EarlyBinding : public ::testing::Test {
 public:
  Ref<_Database> data = Server::get().create<_Database>(catalogue::classOf<Database>);
  Ref<_MovingAverage> average = Server::get().create<_MovingAverage>(catalogue::classOf<MovingAverage>);
  Ref<_RecordSet> prices;
  Ref<_Field> close;
  short periods = 3;
  EventWindow window;

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

TEST_F(EarlyBinding, RunsTheHostsPendingEvents) {
  window.post([] {});
  // A call from inside an event, and an event from inside that.
  window.post([this] {
    window.post([] {});
    auto other = Server::get().create<_Database>(catalogue::classOf<Database>);
    Text file(ORVEX_SOURCE_DIR "/examples/prices.csv");
    Text delimiter(",");
    EXPECT_EQ(other->OpenDataBase(&file, &delimiter), S_OK);
  });
  Ref<_RecordSet> set;
  EXPECT_EQ(mean(set.put()).code, S_OK);
  EXPECT_EQ(window.handled, 3);

  PostQuitMessage(42);
  EXPECT_EQ(mean(set.put()).code, S_OK);
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 42u);
}

TEST_F(EarlyBinding, GoesOnBetweenEventsWithoutEnd) {
  Ref<_RecordSet> set;
  // 498 records yield. Were a yield to wait for the last event, the limits below would end it.
  bool posting = true;
  std::function<void()> again = [&] {
    if (posting && window.handled < 100000) window.post(again);
  };
  window.post(again);
  EXPECT_EQ(mean(set.put()).code, S_OK);
  EXPECT_GE(window.handled, 64);
  EXPECT_LE(window.handled, 64 * 500);

  posting = false;
  EventWindow slow;
  slow.every(10, [&] {
    if (slow.handled < 2000) Sleep(20);
  });
  Sleep(20);
  periods = 490;
  EXPECT_EQ(mean(set.put()).code, S_OK);
  EXPECT_GE(slow.handled, 1);
  EXPECT_LE(slow.handled, 500);
}

TEST_F(EarlyBinding, TakesNoObjectsOfAnotherCopyOfTheServer) {
  ASSERT_TRUE(CopyFileW(L"Orvex.dll", L"OrvexCopy.dll", FALSE));
  const HMODULE copy = LoadLibraryW(L"OrvexCopy.dll");
  ASSERT_NE(copy, nullptr);
  {
    Ref<IClassFactory> factory;
    Ref<_Field> field;
    const auto classObject = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(const CLSID&, const IID&, void**)>(
        reinterpret_cast<void*>(GetProcAddress(copy, "DllGetClassObject")));
    classObject(automation::guidOf(catalogue::classOf<Field>.classId), IID_IClassFactory,
                reinterpret_cast<void**>(factory.put()));
    factory->CreateInstance(nullptr, __uuidof(_Field), reinterpret_cast<void**>(field.put()));
    ASSERT_NE(field.get(), nullptr);
    Ref<_RecordSet> set;
    EXPECT_TRUE(early(average->SimpleMovingAverage(data.byRef(), field.byRef(), &periods, nullptr, set.put()))
                    .is(faults::TypeMismatch));
    EXPECT_TRUE(invoke(average, "SimpleMovingAverage", {data, field, 3}).is(faults::TypeMismatch));
    EXPECT_EQ(prices->addField(field.byRef()), automation::resultOf(faults::TypeMismatch));
  }
  FreeLibrary(copy);
  DeleteFileW(L"OrvexCopy.dll");
}

TEST_F(EarlyBinding, ReportsArraysThatAreNoneInsideTheLoader) {
  short count = 0;
  EXPECT_TRUE(early(data->OpenDatabaseByArray(nullptr)).is(Database::loadFault(faults::InvalidCall.description)));
  // The series before is gone.
  Ref<_RecordSet> empty;
  ASSERT_EQ(data->getRecordset(empty.put()), S_OK);
  EXPECT_EQ(empty->getFieldCount(&count), S_OK);
  EXPECT_EQ(count, 0);
}

TEST_F(EarlyBinding, ReturnsArraysThatTheirOwnersCanResize) {
  Variant doubles;
  Variant texts;
  ASSERT_EQ(close->getDoubleArray(&doubles), S_OK);
  ASSERT_EQ(close->getStringArray(&texts), S_OK);
  for (Variant* array : {&doubles, &texts}) {
    SAFEARRAYBOUND wider{600, 1};
    EXPECT_EQ(array->parray->fFeatures & FADF_FIXEDSIZE, 0);
    EXPECT_EQ(SafeArrayRedim(array->parray, &wider), S_OK);
  }
  EXPECT_EQ(static_cast<double*>(doubles.parray->pvData)[599], 0.0);
}

TEST_F(EarlyBinding, SurvivesHostsThatTakeTheObjectsAway) {
  const std::function<void()> events[] = {
      [this] {
        Variant nothing;
        close->destroy(&nothing);
      },
      [this] {
        Text name("Close");
        short count = 2;
        Variant nothing;
        close->initialize(&count, &name, &nothing);
      },
      [this] {
        data->CloseDatabase();
        average = Ref<_MovingAverage>();
        data = Ref<_Database>();
        prices = Ref<_RecordSet>();
        close = Ref<_Field>();
      },
  };
  for (const auto& event : events) {
    EarlyBinding::SetUp();
    average = Server::get().create<_MovingAverage>(catalogue::classOf<MovingAverage>);
    Ref<_RecordSet> set;
    window.post(event);
    const Outcome outcome = mean(set.put());
    EXPECT_TRUE(outcome.code == S_OK || outcome.is(MovingAverage::SimpleMovingAverageFault)) << outcome;
  }
  EXPECT_EQ(window.handled, 3);
}

}  // namespace
}  // namespace orvex::test
