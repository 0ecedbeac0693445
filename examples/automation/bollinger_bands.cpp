// Bollinger bands of a price file, from a compiled program that binds early: it calls through the interfaces of
// Orvex.h, which is made from the interface definition.
//
//   i686-w64-mingw32-g++ -municode -static -I../include bollinger_bands.cpp -o bollinger_bands.exe -lole32 -loleaut32
//   cl /std:c++17 /EHsc /I ..\include bollinger_bands.cpp ole32.lib oleaut32.lib
//
//   regsvr32 Orvex.dll                 once, as an administrator; or see README.txt for use without registration
//   bollinger_bands.exe prices.csv
#include <windows.h>

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "Orvex.h"

namespace {

/// A reference to an object, released at the end.
template <class Interface>
class Reference {
 public:
  Reference() = default;
  Reference(Reference&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Reference(const Reference&) = delete;
  ~Reference() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  Interface* operator->() const { return pointer_; }
  /// All arguments are passed by reference, objects too; results are put where a pointer leads.
  Interface** operator&() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

/// A text of automation.
class Text {
 public:
  explicit Text(const wchar_t* text = L"") : text_(SysAllocString(text)) {}
  Text(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR* operator&() { return &text_; }
  const wchar_t* get() const { return text_; }

 private:
  BSTR text_;
};

/// Every method returns an HRESULT. Number, source and description of an error wait in the thread's error object.
void check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* error = nullptr;
  if (GetErrorInfo(0, &error) == S_OK) {
    Text source;
    Text description;
    error->GetSource(&source);
    error->GetDescription(&description);
    error->Release();
    std::fprintf(stderr, "error %ld in %ls: %ls\n", result & 0xFFFF, source.get(), description.get());
  } else {
    std::fprintf(stderr, "error 0x%08lx\n", static_cast<unsigned long>(result));
  }
  throw std::runtime_error("a call failed");
}

template <class Interface>
Reference<Interface> create(const CLSID& id) {
  Reference<Interface> object;
  check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), reinterpret_cast<void**>(&object)));
  return object;
}

Reference<_Field> fieldOf(const Reference<_RecordSet>& set, const wchar_t* name) {
  Reference<_Field> field;
  Text text(name);
  check(set->getField(&text, &field));
  return field;
}

double valueOf(const Reference<_Field>& field, short row) {
  double value = 0;
  check(field->getValue(&row, &value));
  return value;
}

void printBands(const wchar_t* file) {
  // A Database holds a price series: date, open, high, low, close and volume, one record a line, oldest first, without
  // a header line.
  auto data = create<_Database>(__uuidof(Database));
  Text path(file);
  Text delimiter(L",");
  check(data->OpenDataBase(&path, &delimiter));

  // A RecordSet is a set of columns, each of them a Field.
  Reference<_RecordSet> prices;
  check(data->getRecordset(&prices));
  const auto dates = fieldOf(prices, L"Date");
  auto closes = fieldOf(prices, L"Close");

  // Indicators are methods of a few classes. Each takes the Database, the columns to compute from and its settings, and
  // returns a RecordSet of new columns.
  const auto bands = create<_Bands>(__uuidof(Bands));
  short periods = 20;
  short deviations = 2;
  short simpleAverage = 1;
  Reference<_RecordSet> result;
  check(bands->BollingerBands(&data, &closes, &periods, &deviations, &simpleAverage, &result));
  const auto bottom = fieldOf(result, L"BollingerBandsBottom");
  const auto median = fieldOf(result, L"BollingerBandsMedian");
  const auto top = fieldOf(result, L"BollingerBandsTop");

  // Rows count from 1, the oldest record. Those that have too few records before them are 0.
  std::printf("Date,Close,Bottom,Median,Top\n");
  short count = 0;
  check(data->getRecordCount(&count));
  for (short row = 1; row <= count; ++row) {
    Text date;
    check(dates->getStrValue(&row, &date));
    std::printf("%ls,%g,%g,%g,%g\n", date.get(), valueOf(closes, row), valueOf(bottom, row), valueOf(median, row),
                valueOf(top, row));
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bollinger_bands FILE\n");
    return 2;
  }
  // The objects live in a single-threaded apartment.
  if (FAILED(CoInitialize(nullptr))) return 1;
  int outcome = 0;
  try {
    printBands(argv[1]);
  } catch (const std::exception&) {
    outcome = 1;
  }
  CoUninitialize();
  return outcome;
}
