#include "orvex/automation/interface_definition.h"

#include <array>
#include <string_view>

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

using catalogue::Argument;
using catalogue::Class;
using catalogue::Method;
using catalogue::Type;

std::string guidText(const catalogue::Guid& id) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < id.bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[id.bytes[i] >> 4];
    text += digits[id.bytes[i] & 15];
  }
  return text;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result += '"';
}

std::string typeText(Type type) {
  switch (type) {
    case Type::Boolean:
      return "VARIANT_BOOL";
    case Type::Integer:
      return "short";
    case Type::Long:
      return "long";
    case Type::Double:
      return "double";
    case Type::String:
      return "BSTR";
    case Type::Field:
    case Type::Note:
    case Type::RecordSet:
    case Type::Database:
      return std::string("_").append(typeName(type)).append("*");
    case Type::Object:
      return "IUnknown*";
    default:
      return "VARIANT";
  }
}

std::string defaultText(const Argument& argument) {
  const auto number = catalogue::coerce(argument.otherwise.number, Type::String);
  return argument.type == Type::String ? quoted(argument.otherwise.text) : std::get<std::string>(number);
}

/// Whether widl can store the argument's default: it takes whole numbers alone.
bool storesDefault(const Argument& argument) {
  return argument.type == Type::Integer || argument.type == Type::Long || argument.type == Type::Boolean;
}

std::string parameterText(const Argument& argument) {
  std::string attributes = argument.byValue ? "in" : "in, out";
  if (argument.optional) {
    attributes = (storesDefault(argument) ? "OPTIONAL(" : "OPTIONAL_STORED_LATER(") + defaultText(argument) + ")";
  }
  const std::string_view reference = argument.byValue ? " " : "* ";
  return "[" + attributes + "] " + typeText(argument.type).append(reference).append(argument.name);
}

std::string methodText(const Class& owner, const Method& method) {
  constexpr std::array kinds = {"", ", propget", ", propput", ", propputref"};
  std::string text = "  [id(" + std::to_string(catalogue::dispatchId(owner, method)) + ")" +
                     kinds[static_cast<std::size_t>(method.kind)] + ", helpstring(" + quoted(method.help) + ")]\n";
  text.append("  HRESULT ").append(method.name).append("(");
  std::string_view separator = "\n      ";
  const auto add = [&](const std::string& parameter) {
    text.append(separator).append(parameter);
    separator = ",\n      ";
  };
  for (const Argument& argument : method.arguments) add(parameterText(argument));
  if (method.result != Type::Nothing) add("[out, retval] " + typeText(method.result) + "* Result");
  return text += ");\n";
}

std::string interfaceText(const Class& owner) {
  std::string text = "[object, dual, hidden, oleautomation, nonextensible, pointer_default(unique),\n uuid(" +
                     guidText(owner.interfaceId) + "), helpstring(" + quoted(owner.help) + ")]\n";
  text.append("interface _").append(owner.name).append(" : IDispatch {\n");
  for (const Method* method : owner.methods) text += methodText(owner, *method);
  return text += "}\n\n";
}

std::string versionText() {
  return std::to_string(LibraryMajorVersion) + "." + std::to_string(LibraryMinorVersion);
}

}  // namespace

std::string programId(const Class& described) {
  return std::string(LibraryName).append(".").append(described.name);
}

std::string versionedProgramId(const Class& described) {
  return programId(described) + "." + std::to_string(LibraryMajorVersion);
}

std::string interfaceDefinition() {
  std::string text =
      "// The interfaces of the automation server. This file is made: orvex idl prints it.\n"
      "import \"oaidl.idl\";\n\n"
      "// Defaults are for the type library alone: in the C++ header they would be those of pointers.\n"
      "#ifdef ORVEX_TYPE_LIBRARY\n"
      "#define OPTIONAL(value) in, out, optional, defaultvalue(value)\n"
      "// widl stores whole numbers alone. For others it makes a place, which store_defaults.py fills.\n"
      "#define OPTIONAL_STORED_LATER(value) in, out, optional, defaultvalue(0)\n"
      "#else\n"
      "#define OPTIONAL(value) in, out, optional\n"
      "#define OPTIONAL_STORED_LATER(value) in, out, optional\n"
      "#endif\n\n";
  for (const Class* one : catalogue::classes()) text.append("interface _").append(one->name).append(";\n");
  text += "\n";
  for (const Class* one : catalogue::classes()) text += interfaceText(*one);

  text += "[uuid(" + guidText(LibraryId) + "), version(" + versionText() + "), lcid(" + std::to_string(LibraryLocale) +
          "), helpstring(" + quoted(LibraryHelp) + ")]\n";
  text.append("library ").append(LibraryName).append(" {\n  importlib(\"stdole2.tlb\");\n");
  for (const Class* one : catalogue::classes()) {
    text += "\n  [uuid(" + guidText(one->classId) + "), helpstring(" + quoted(one->help) + ")]\n";
    text.append("  coclass ").append(one->name).append(" {\n    [default] interface _").append(one->name) +=
        ";\n  };\n";
  }
  return text += "};\n";
}

std::string registrationFreeManifest() {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "  <assemblyIdentity type=\"win32\" name=\"Orvex.Server\" version=\"" +
      versionText() +
      ".0.0\"/>\n"
      "  <file name=\"Orvex.dll\">\n"
      "    <typelib tlbid=\"{" +
      guidText(LibraryId) + "}\" version=\"" + versionText() + "\" helpdir=\"\"/>\n";
  for (const Class* one : catalogue::classes()) {
    text.append("    <comClass clsid=\"{").append(guidText(one->classId));
    text.append("}\" threadingModel=\"Apartment\" tlbid=\"{").append(guidText(LibraryId));
    text.append("}\" progid=\"").append(versionedProgramId(*one)).append("\">\n");
    text.append("      <progid>").append(programId(*one)).append("</progid>\n    </comClass>\n");
  }
  text += "  </file>\n";
  // By these an interface crosses from one apartment to another.
  for (const Class* one : catalogue::classes()) {
    text.append("  <comInterfaceExternalProxyStub name=\"_").append(one->name);
    text.append("\" iid=\"{").append(guidText(one->interfaceId));
    text.append("}\" tlbid=\"{").append(guidText(LibraryId));
    text.append("}\" proxyStubClsid32=\"").append(InterfaceMarshaller).append("\"/>\n");
  }
  return text += "</assembly>\n";
}

std::string interfaceContract() {
  constexpr std::array kinds = {"", "get ", "put ", "putref "};
  constexpr std::size_t inherited = 7;  // entries of IDispatch
  std::string text;
  for (const Class* one : catalogue::classes()) {
    const std::string interface = std::string(one->name) + " " + guidText(one->interfaceId);
    text += interface + " of class " + guidText(one->classId) + "\n";
    for (std::size_t i = 0; i < one->methods.size(); ++i) {
      const Method& method = *one->methods[i];
      text += interface + " " + std::to_string(inherited + i) + ": " +
              std::to_string(catalogue::dispatchId(*one, method)) + " ";
      text.append(kinds[static_cast<std::size_t>(method.kind)]).append(method.name).append("(");
      std::string_view separator;
      for (const Argument& argument : method.arguments) {
        text.append(separator).append(parameterText(argument));
        separator = ", ";
      }
      text += method.result == Type::Nothing ? ")\n" : ") " + typeText(method.result) + "\n";
    }
  }
  return text;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
