#include <gtest/gtest.h>

#include <chrono>

#include "orvex/automation/interface_definition.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

/// A client that has the type library alone finds in it what the catalogue says.
namespace orvex::test {
namespace {

using automation::guidOf;
using catalogue::Argument;
using catalogue::Class;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Type;

struct Documentation {
  /// `source` is a type library or one of its types.
  template <class Source>
  Documentation(Source* source, MEMBERID id) {
    source->GetDocumentation(id, &name, &help, nullptr, nullptr);
  }

  Text name;
  Text help;
};

std::string typeText(ITypeInfo* info, const TYPEDESC& type) {
  if (type.vt == VT_PTR) return typeText(info, *type.lptdesc) + "*";
  if (type.vt == VT_USERDEFINED) {
    Ref<ITypeInfo> referred;
    info->GetRefTypeInfo(type.hreftype, referred.put());
    const Documentation known(referred.get(), MEMBERID_NIL);
    return known.name.get();
  }
  return type.vt == VT_VOID || type.vt == VT_HRESULT ? "nothing" : "type " + std::to_string(type.vt);
}

std::string expectedType(Type type) {
  if (type == Type::Nothing) return "nothing";
  const VARTYPE inMemory = typeInMemory(type);
  return inMemory == VT_DISPATCH ? "_" + std::string(typeName(type)) + "*" : "type " + std::to_string(inMemory);
}

void compareArgument(ITypeInfo* info, const ELEMDESC& told, const Argument& argument) {
  SCOPED_TRACE(argument.name);
  EXPECT_EQ(typeText(info, told.tdesc), expectedType(argument.type) + (argument.byValue ? "" : "*"));
  const USHORT flags = told.paramdesc.wParamFlags;
  EXPECT_EQ((flags & PARAMFLAG_FOPT) != 0, argument.optional);
  EXPECT_TRUE((flags & PARAMFLAG_FIN) != 0);
  EXPECT_EQ((flags & PARAMFLAG_FOUT) != 0, !argument.byValue);
  ASSERT_EQ((flags & PARAMFLAG_FHASDEFAULT) != 0, argument.optional);
  if (!argument.optional) return;
  const VARIANT& otherwise = told.paramdesc.pparamdescex->varDefaultValue;
  ASSERT_EQ(otherwise.vt, typeInMemory(argument.type));
  switch (argument.type) {
    case Type::Integer:
      EXPECT_EQ(otherwise.iVal, argument.otherwise.number);
      break;
    case Type::Double:
      EXPECT_EQ(otherwise.dblVal, argument.otherwise.number);
      break;
    case Type::String:
      EXPECT_EQ(automation::textOf(otherwise.bstrVal), argument.otherwise.text);
      break;
    default:
      FAIL() << "no argument of another type has had a default";
  }
}

void compareMethod(ITypeInfo* info, const FUNCDESC& told, const Class& owner, const Method& method) {
  SCOPED_TRACE(method.name);
  constexpr INVOKEKIND kinds[] = {INVOKE_FUNC, INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF};
  EXPECT_EQ(told.memid, catalogue::dispatchId(owner, method));
  EXPECT_EQ(told.invkind, kinds[static_cast<int>(method.kind)]);
  EXPECT_EQ(typeText(info, told.elemdescFunc.tdesc), expectedType(method.result));
  const Documentation known(info, told.memid);
  EXPECT_EQ(known.name.get(), method.name);
  // The parts of a property share the documentation of the first.
  const Method& first = *owner.methods[static_cast<std::size_t>(told.memid) - 1];
  EXPECT_EQ(known.help.get(), first.help);

  ASSERT_EQ(static_cast<std::size_t>(told.cParams), method.arguments.size());
  BSTR names[20] = {};
  UINT nameCount = 0;
  info->GetNames(told.memid, names, 20, &nameCount);
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    const Argument& argument = method.arguments[i];
    compareArgument(info, told.lprgelemdescParam[i], argument);
    // What is assigned to a property has no name for its users. Names that differ in case alone are one in a library.
    if (i + 1 < nameCount) {
      EXPECT_STRCASEEQ(automation::textOf(names[i + 1]).c_str(), std::string(argument.name).c_str());
    }
  }
  for (BSTR name : names) SysFreeString(name);
}

TEST(TypeLibrary, TellsWhatTheCatalogueSays) {
  const auto library = Server::get().typeLibrary();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_TRUE(attributes->guid == guidOf(automation::LibraryId));
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->lcid, 1033u);
  library->ReleaseTLibAttr(attributes);
  const Documentation known(library.get(), -1);
  EXPECT_EQ(known.name.get(), "Orvex");
  EXPECT_EQ(known.help.get(), "Orvex Technical Analysis Library");
  EXPECT_EQ(library->GetTypeInfoCount(), 2 * catalogue::classes().size());

  for (const Class* owner : catalogue::classes()) {
    SCOPED_TRACE(owner->name);
    Ref<ITypeInfo> info;
    ASSERT_EQ(library->GetTypeInfoOfGuid(guidOf(owner->interfaceId), info.put()), S_OK);
    const Documentation called(info.get(), MEMBERID_NIL);
    EXPECT_EQ(called.name.get(), "_" + std::string(owner->name));
    TYPEATTR* type = nullptr;
    info->GetTypeAttr(&type);
    EXPECT_EQ(type->wTypeFlags & (TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN), TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN);
    const std::size_t inherited = 7;
    EXPECT_EQ(type->cFuncs, owner->methods.size() + inherited);
    info->ReleaseTypeAttr(type);
    for (std::size_t i = 0; i < owner->methods.size(); ++i) {
      FUNCDESC* function = nullptr;
      ASSERT_EQ(info->GetFuncDesc(static_cast<UINT>(i + inherited), &function), S_OK);
      EXPECT_EQ(static_cast<std::size_t>(function->oVft), (i + inherited) * sizeof(void*));
      compareMethod(info.get(), *function, *owner, *owner->methods[i]);
      info->ReleaseFuncDesc(function);
    }

    const auto object = Server::get().create(*owner);
    ASSERT_NE(object.get(), nullptr);
    Ref<ITypeInfo> ofClass;
    ASSERT_EQ(object.as<IProvideClassInfo>()->GetClassInfo(ofClass.put()), S_OK);
    const Documentation described(ofClass.get(), MEMBERID_NIL);
    EXPECT_EQ(described.name.get(), owner->name);
    EXPECT_EQ(described.help.get(), owner->help);
  }
}

TEST(TypeLibrary, IsKeptWhileObjectsLive) {
  constexpr int times = 100;
  const auto timeOf = [](const auto& call) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < times; ++i) call();
    return (std::chrono::steady_clock::now() - start).count();
  };
  const auto object = Server::get().create(catalogue::classOf<Field>);
  const auto asked = timeOf([&] {
    Ref<ITypeInfo> info;
    Ref<ITypeInfo> ofClass;
    ASSERT_EQ(object->GetTypeInfo(0, 1033, info.put()), S_OK);
    ASSERT_EQ(object.as<IProvideClassInfo>()->GetClassInfo(ofClass.put()), S_OK);
  });
  // A file that nobody else has open: the platform reads one that is in use only once. It takes hundreds of times as
  // long, which leaves room for a busy machine.
  ASSERT_TRUE(CopyFileW(L"Orvex.dll", L"OrvexTypes.dll", FALSE));
  const auto read = timeOf([] {
    Ref<ITypeLib> library;
    ASSERT_EQ(LoadTypeLibEx(L"OrvexTypes.dll", REGKIND_NONE, library.put()), S_OK);
  });
  DeleteFileW(L"OrvexTypes.dll");
  EXPECT_LT(10 * asked, read);
}

}  // namespace
}  // namespace orvex::test
