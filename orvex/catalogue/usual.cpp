#include "orvex/catalogue/usual.h"

#include "orvex/catalogue/computed_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

bool isWholeNumber(Type type) {
  return type == Type::Integer || type == Type::Long;
}

}  // namespace

Value usualOf(const Argument& argument, int count) {
  const Usual& usual = argument.usual;
  if (!usual.given) return argument.optional ? defaultOf(argument) : Missing{};
  if (usual.text.empty()) return coerce(usual.number, argument.type);
  if (!isWholeNumber(argument.type)) return std::string(usual.text);
  static constexpr Method withoutArguments{};
  return coerce(static_cast<double>(evaluateRow(usual.text, withoutArguments, count, {})), argument.type);
}

std::vector<Taken> takeUsual(const Method& method, std::span<Value> arguments, const std::shared_ptr<Database>& data) {
  std::vector<Taken> taken;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Argument& argument = method.arguments[i];
    if (!std::holds_alternative<Missing>(arguments[i])) continue;
    if (argument.type == Type::Database) {
      arguments[i] = data;
    } else if (argument.type == Type::RecordSet) {
      arguments[i] = data->getRecordset();
    } else if (argument.usual.given && !argument.optional) {
      const Value usual = usualOf(argument, data->getRecordCount().value());
      std::string text = std::get<std::string>(coerce(usual, Type::String));
      arguments[i] = argument.type == Type::Field ? Value(data->getRecordset()->getField(text)) : usual;
      taken.push_back({&argument, std::move(text)});
    }
  }
  return taken;
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
