// Random calls through Orvex.dll, for minutes: late and early ones, with arguments of every type, too many and too few
// of them, by value, by reference and by null references, and a host that lets go of the objects in use, calls again
// and posts without end from inside a yield.
#include <algorithm>
#include <cstring>
#include <limits>
#include <random>

#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"
#include "tests/support/soak.h"

// They build on the platform's header.
#include <psapi.h>
#include <winternl.h>

// The headers lack it.
extern "C" void SetOaNoCache();

namespace orvex::test {
namespace {

using catalogue::Argument;
using catalogue::Class;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Type;

class RandomHost {
 public:
  RandomHost(std::uint32_t seed, EventWindow& window) : generator_(seed), window_(window) {}

  int run() {
    load();
    for (current_ = 1; current_ <= 50; ++current_) callOne();
    current_ = 0;
    // Events that no yield has run, a request to quit among them.
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    for (const Object& holder : holders_) part(holder);
    objects_.clear();
    holders_.clear();
    SetErrorInfo(0, nullptr);
    if (!Server::get().canUnload()) fail("an object is left");
    if (foreign_.references != 1) fail("a reference to the host's own object is left");
    return calls_;
  }

 private:
  struct Object {
    const Class* owner;
    Ref<IDispatch> reference;
  };

  [[noreturn]] static void fail(const char* what) {
    std::printf("FAILED: %s\n", what);
    std::fflush(stdout);
    std::abort();
  }

  /// Objects that hold each other are the host's to part.
  static void part(const Object& holder) {
    const bool set = holder.owner->name == "RecordSet";
    IDispatch* object = holder.reference.get();
    const Outcome outcome = invoke(object, idOf(object, set ? "setDatabase" : "DataSource"),
                                   {static_cast<IDispatch*>(nullptr)}, set ? DISPATCH_METHOD : DISPATCH_PROPERTYPUTREF,
                                   set ? std::vector<DISPID>() : std::vector<DISPID>{DISPID_PROPERTYPUT});
    if (FAILED(outcome.code)) fail("an object holds on to another");
  }

  unsigned below(unsigned count) { return static_cast<unsigned>(generator_() % count); }
  bool once(unsigned in) { return below(in) == 0; }
  template <class T>
  T of(std::initializer_list<T> options) {
    return options.begin()[below(static_cast<unsigned>(options.size()))];
  }

  /// Prices, and a set of them with its columns.
  void load() {
    const Class& database = catalogue::classOf<Database>;
    const auto data = Server::get().create(database);
    if (once(8)) {
      invoke(data, "OpenDataBase", {ORVEX_SOURCE_DIR "/examples/prices.csv", ","});
    } else {
      std::vector<double> prices(1 + below(200));
      for (double& price : prices) price = 50 + below(2000) / 16.0;
      invoke(data, "OpenDatabaseByFourArrays", {Variant(prices), Variant(prices), Variant(prices), Variant(prices)});
    }
    invoke(data, "MoveFirst", {});
    objects_.push_back({&database, data});
    const Outcome set = invoke(data, "getRecordset", {});
    keep(set.result);
    for (const char* name : {"Open", "High", "Low", "Close", "Volume"}) {
      keep(invoke(set.object<IDispatch>(), "getField", {name}).result);
    }
  }

  /// Keeps an object that a call has returned, in the place of another where there are many.
  void keep(const VARIANT& result) {
    if (result.vt != VT_DISPATCH || result.pdispVal == nullptr || result.pdispVal == &foreign_) return;
    for (const Class* owner : catalogue::classes()) {
      Ref<IDispatch> reference;
      result.pdispVal->QueryInterface(automation::guidOf(owner->interfaceId),
                                      reinterpret_cast<void**>(reference.put()));
      if (reference.get() == nullptr) continue;
      if (objects_.size() >= 24) dropOne();
      objects_.push_back({owner, reference});
    }
  }

  void dropOne() { objects_.erase(objects_.begin() + below(static_cast<unsigned>(objects_.size()))); }

  /// One of the objects of a class, or nothing.
  Ref<IDispatch> objectOf(const Class* owner) {
    std::vector<Ref<IDispatch>> found;
    for (const Object& object : objects_) {
      if (object.owner == owner) found.push_back(object.reference);
    }
    if (found.empty()) return {};
    return found[below(static_cast<unsigned>(found.size()))];
  }

  Ref<IDispatch> anyObject() {
    if (objects_.empty() || once(8)) return {};
    return objects_[below(static_cast<unsigned>(objects_.size()))].reference;
  }

  std::string text() {
    if (once(50)) return std::string(10000 + below(100000), 'x');
    if (once(10)) return {"a\0\xED\xA0\xBD z", 7};
    return of<const char*>({"", "Close", "high", "EMA", "x", "3", "2.5", " 7 ", "1e400", "-1", "True", "\xCE\xA9",
                            ORVEX_SOURCE_DIR "/examples/prices.csv", ","});
  }

  double number() {
    return of<double>({0, 1, 2, 3, 5, 14, 20, 100, 2.5, -1, 0.2, 32767, 32768, -32768, 1e10, 1e308, -1e-300,
                       std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()});
  }

  /// An argument of the type that is asked for.
  Variant plain(Type type) {
    switch (type) {
      case Type::Integer:
        return static_cast<short>(once(6) ? generator_() : below(20));
      case Type::Long:
        return once(6) ? static_cast<int>(generator_()) : static_cast<int>(below(20));
      case Type::Double:
        return number();
      case Type::Boolean:
        return once(2);
      case Type::String:
        return text();
      case Type::Field:
      case Type::Note:
      case Type::RecordSet:
      case Type::Database:
        return objectOf(catalogue::findClass(typeName(type)));
      case Type::Object:
        return once(2) ? Variant(&foreign_) : Variant(anyObject());
      default:
        return array(VT_R8);
    }
  }

  VARTYPE anyType() {
    return of<VARTYPE>({VT_EMPTY, VT_NULL, VT_I1,   VT_I2,      VT_I4,    VT_I8,       VT_UI1,    VT_UI2,
                        VT_UI4,   VT_UI8,  VT_INT,  VT_UINT,    VT_R4,    VT_R8,       VT_CY,     VT_DECIMAL,
                        VT_DATE,  VT_BOOL, VT_BSTR, VT_VARIANT, VT_ERROR, VT_DISPATCH, VT_UNKNOWN});
  }

  /// A value of any type; an array in the place of what a VARIANT cannot hold.
  Variant odd(int depth = 0) {
    const VARTYPE type = anyType();
    if (type == VT_VARIANT || (depth == 0 && once(5)))
      return array(depth == 0 ? anyType() : static_cast<VARTYPE>(VT_I2), depth);
    if (type == VT_BSTR) return text();
    if (type == VT_DISPATCH) return once(3) ? Variant(&foreign_) : Variant(anyObject());
    Variant made;
    made.vt = type;
    if (type == VT_UNKNOWN) {
      made = Variant(anyObject());
      made.vt = VT_UNKNOWN;
    } else if (type == VT_ERROR) {
      made.scode = once(2) ? DISP_E_PARAMNOTFOUND : E_FAIL;
    } else if (type == VT_R4) {
      made.fltVal = static_cast<float>(number());
    } else if (type == VT_R8 || type == VT_DATE) {
      made.dblVal = number();
    } else if (type == VT_DECIMAL) {
      made.decVal.scale = static_cast<BYTE>(below(once(4) ? 256 : 29));
      made.decVal.sign = once(2) ? DECIMAL_NEG : 0;
      made.decVal.Hi32 = once(2) ? 0 : generator_();
      made.decVal.Lo64 = once(2) ? below(100) : generator_();
    } else if (type != VT_EMPTY && type != VT_NULL) {
      made.llVal = once(3) ? static_cast<LONGLONG>(generator_()) << below(33) : below(20);
    }
    return made;
  }

  /// An array of any bounds, at times of several dimensions, at times none.
  Variant array(VARTYPE type, int depth = 0) {
    if (once(12)) return {type, nullptr};
    SAFEARRAYBOUND bounds[] = {{once(10) ? 0 : 1 + below(30), 1}, {2, 0}};
    if (once(3)) bounds[0].lLbound = of<LONG>({0, -3, 2, 2147483640, -2147483647 - 1});
    SAFEARRAY* made = SafeArrayCreate(type, once(10) ? 2 : 1, bounds);
    if (made == nullptr) return {type, nullptr};
    for (ULONG i = 0; i < bounds[0].cElements && made->cDims == 1; ++i) {
      LONG index = static_cast<LONG>(static_cast<ULONG>(bounds[0].lLbound) + i);
      if (type == VT_VARIANT) {
        Variant element = odd(depth + 1);
        SafeArrayPutElement(made, &index, &element);
      } else if (type == VT_BSTR) {
        Text element(text());
        SafeArrayPutElement(made, &index, *&element);
      } else if (type == VT_R8) {
        double element = number();
        SafeArrayPutElement(made, &index, &element);
      }
    }
    return {type, made};
  }

  std::pair<const Class*, const Method*> anyMethod() {
    static const auto all = [] {
      std::vector<std::pair<const Class*, const Method*>> methods;
      for (const Class* owner : catalogue::classes()) {
        for (const Method* method : owner->methods) methods.emplace_back(owner, method);
      }
      return methods;
    }();
    return all[below(static_cast<unsigned>(all.size()))];
  }

  void callOne() {
    ++calls_;
    while (once(4)) window_.post([this] { misbehave(); });
    const auto [chosen, method] = anyMethod();
    const Class& owner = *chosen;
    Ref<IDispatch> object = objectOf(&owner);
    if (object.get() == nullptr || once(10)) object = Server::get().create(owner);
    if (owner.name == "RecordSet" || owner.name == "Oscillator") holders_.push_back({&owner, object});
    // The object may be let go of before its call ends.
    IDispatch* bare = object.get();
    const bool held = once(2);
    if (!held) objects_.push_back({&owner, std::move(object)});
    if (once(3)) {
      callEarly(bare, owner, *method);
    } else {
      callLate(bare, owner, *method);
    }
  }

  void callLate(IDispatch* object, const Class& owner, const Method& method) {
    const unsigned oddness = once(3) ? 3 : 40;  // one argument in that many
    std::vector<Variant> variables;
    for (const Argument& argument : method.arguments) {
      variables.push_back(once(oddness)                  ? odd()
                          : argument.optional && once(4) ? Variant(LeftOut())
                                                         : plain(argument.type));
    }
    while (!variables.empty() && once(oddness)) variables.pop_back();
    while (once(oddness)) variables.push_back(odd());
    std::vector<Variant> arguments;
    for (Variant& variable : variables) arguments.push_back(once(2) ? variable : reference(variable));
    const bool put = method.kind == Kind::PropertyPut || method.kind == Kind::PropertyPutReference;
    std::vector<DISPID> named;
    if (put) named.push_back(DISPID_PROPERTYPUT);
    while (once(oddness) && named.size() < arguments.size()) named.push_back(static_cast<DISPID>(below(9)) - 1);
    WORD flags = put ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    if (once(40)) flags = static_cast<WORD>(below(16));
    const DISPID id = once(100) ? static_cast<DISPID>(below(200)) - 20 : catalogue::dispatchId(owner, method);
    keep(invoke(object, id, std::move(arguments), flags, std::move(named)).result);
  }

  /// By reference, as a variable or as what it holds.
  Variant reference(Variant& variable) {
    if (once(2) || variable.vt == VT_EMPTY || variable.vt == VT_NULL) return {static_cast<VARIANT*>(&variable)};
    Variant made;
    made.vt = static_cast<VARTYPE>(variable.vt | VT_BYREF);
    made.byref = variable.vt == VT_DECIMAL ? static_cast<void*>(&variable) : &variable.bVal;
    if (once(30)) made.byref = nullptr;
    return made;
  }

  void callEarly(IDispatch* object, const Class& owner, const Method& method) {
    std::vector<Variant> variables;
    for (const Argument& argument : method.arguments) {
      const VARTYPE type = typeInMemory(argument.type);
      const bool otherObject = (type == VT_DISPATCH || type == VT_UNKNOWN) && once(10);
      variables.push_back(otherObject                     ? once(2) ? Variant(&foreign_) : Variant(anyObject())
                                              : type == VT_VARIANT && once(2) ? odd()
                                                          : plain(argument.type));
    }
    keep(test::callEarly(object, owner, method, variables, [&](const Variant&) { return once(30); }).result);
  }

  /// What a host does while a call is under way.
  void misbehave() {
    if (depth_ >= 2) return;
    ++depth_;
    const auto drop = [this] {
      if (!objects_.empty()) dropOne();
    };
    const auto field = [this] { return objectOrNew(catalogue::classOf<Field>); };
    const std::function<void()> deeds[] = {
        [&] { objects_.clear(); },
        drop,
        drop,
        [&] { invoke(field(), "destroy", {}); },
        [&] {
          invoke(field(), "initialize", {static_cast<int>(below(300)), "again"});
        },
        [&] { invoke(objectOrNew(catalogue::classOf<RecordSet>), "removeField", {"High"}); },
        [&] { invoke(objectOrNew(catalogue::classOf<Database>), "CloseDatabase", {}); },
        [] { PostQuitMessage(0); },
        [&] {
          if (once(4)) repost(current_);
        },
        [&] { callOne(); },
        [&] { callOne(); },
    };
    deeds[below(std::size(deeds))]();
    --depth_;
  }

  /// An event that comes back as long as the call goes on in which it was first run.
  void repost(int call) {
    if (call != 0 && call == current_) window_.post([this, call] { repost(call); });
  }

  Ref<IDispatch> objectOrNew(const Class& owner) {
    const auto known = objectOf(&owner);
    return known.get() != nullptr ? known : Server::get().create(owner);
  }

  std::mt19937 generator_;
  Foreign foreign_;
  EventWindow& window_;
  std::vector<Object> objects_;
  std::vector<Object> holders_;
  int current_ = 0;  // which of the round's calls is under way, 0 for none
  int depth_ = 0;
  int calls_ = 0;
};

/// The handles of the process, from the system's table of all of them: Wine tells the count of a process as 0.
std::int64_t handles() {
  struct Entry {
    ULONG process;
    UCHAR type, flags;
    USHORT handle;
    void* object;
    ULONG access;
  };
  constexpr auto allHandles = static_cast<SYSTEM_INFORMATION_CLASS>(16);
  constexpr NTSTATUS tooShort = static_cast<NTSTATUS>(0xC0000004);
  // Their number, and the entries where a pointer may stand.
  static std::vector<void*> table(1 << 14);
  NTSTATUS status = tooShort;
  while ((status = NtQuerySystemInformation(allHandles, table.data(), static_cast<ULONG>(table.size() * sizeof(void*)),
                                            nullptr)) == tooShort) {
    table.resize(2 * table.size());
  }
  if (status != 0) return -1;
  ULONG count = 0;
  std::memcpy(&count, table.data(), sizeof count);
  const auto* entries = reinterpret_cast<const Entry*>(&table[1]);
  return std::count_if(entries, entries + count,
                       [](const Entry& entry) { return entry.process == GetCurrentProcessId(); });
}

std::int64_t workingSet() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return static_cast<std::int64_t>(counters.WorkingSetSize);
}

}  // namespace
}  // namespace orvex::test

int main(int count, char** words) {
  using namespace orvex::test;
  Soak soak(count, words,
            {{"handles", 0, handles},
             {"heap blocks", 8, [] { return static_cast<std::int64_t>(HeapUse::now().blocks); }},
             {"heap bytes", 1 << 10, [] { return static_cast<std::int64_t>(HeapUse::now().bytes); }},
             {"working set", 4 << 20, workingSet}});
  // Freed texts would stay in use, of every length that there has been.
  SetOaNoCache();
  EventWindow window;
  return soak.run([&](std::uint32_t seed) { return RandomHost(seed, window).run(); });
}
